#include "platform/windows/text_codec.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr UINT kShiftJis = 932;
constexpr wchar_t kReplacement = 0xFFFD;

bool IsAscii(std::string_view text) {
    unsigned char all = 0;
    for (const char c : text) all |= static_cast<unsigned char>(c);
    return all < 0x80U;
}

// The bytes 80, A0 and FD to FF are no characters; Windows maps them to unused codes.
bool IsAssigned(wchar_t unit) { return unit != 0x80 && !(unit >= 0xF8F0 && unit <= 0xF8F3); }

// Appends the characters of `bytes`; false, and nothing appended, when one of them is invalid.
bool AppendExact(std::wstring& text, std::string_view bytes) {
    const std::size_t before = text.size();
    const int size = static_cast<int>(bytes.size());
    text.resize(before + bytes.size());
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the size is passed too
    const int length = MultiByteToWideChar(kShiftJis, MB_ERR_INVALID_CHARS, bytes.data(), size,
                                           text.data() + before, size);
    text.resize(before + static_cast<std::size_t>(length));
    bool exact = length > 0;
    for (std::size_t i = before; i < text.size(); ++i) exact = exact && IsAssigned(text[i]);
    if (!exact) text.resize(before);
    return exact;
}

// The length in bytes of the first character, valid or not. A lead byte without a trail byte counts
// alone.
std::size_t CharacterLength(std::string_view bytes) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    const bool lead = (byte(0) >= 0x81 && byte(0) <= 0x9F) || (byte(0) >= 0xE0 && byte(0) <= 0xFC);
    if (!lead || bytes.size() < 2) return 1;
    return byte(1) >= 0x40 && byte(1) <= 0xFC && byte(1) != 0x7F ? 2 : 1;
}

}  // namespace

std::string WindowsTextCodec::Decode(std::string_view bytes) const {
    if (IsAscii(bytes)) return std::string(bytes);
    std::wstring text;
    if (AppendExact(text, bytes)) return Utf8(text);
    while (!bytes.empty()) {
        const std::size_t length = CharacterLength(bytes);
        if (!AppendExact(text, bytes.substr(0, length))) text += kReplacement;
        bytes.remove_prefix(length);
    }
    return Utf8(text);
}

std::optional<std::string> WindowsTextCodec::Encode(std::string_view utf8) const {
    if (IsAscii(utf8)) return std::string(utf8);
    const std::wstring wide = Wide(utf8);
    const int size = static_cast<int>(wide.size());
    std::string bytes(2 * wide.size(), '\0');
    const int length = WideCharToMultiByte(kShiftJis, 0, wide.data(), size, bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(length));
    // Windows replaces what the code page lacks by similar characters and "?"; decoding shows that.
    if (Decode(bytes) != utf8) return std::nullopt;
    return bytes;
}

}  // namespace tamrin
