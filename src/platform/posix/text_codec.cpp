#include "platform/posix/text_codec.h"

#include <array>
#include <cerrno>

#include "platform/utf8.h"

namespace tamrin {
namespace {

bool Opened(iconv_t converter) {
    return converter != reinterpret_cast<iconv_t>(-1);  // NOLINT: that is how iconv_open fails
}

// Converts the beginning of `text` and removes it: all of it, or the part before bytes that are no
// character.
void AppendConverted(std::string& converted, iconv_t converter, std::string_view& text) {
    std::array<char, 4096> buffer;
    // iconv does not write through its source in spite of the type.
    char* source = const_cast<char*>(text.data());
    std::size_t left = text.size();
    bool full = true;
    while (full) {
        char* target = buffer.data();
        std::size_t room = buffer.size();
        full = iconv(converter, &source, &left, &target, &room) == static_cast<std::size_t>(-1) &&
               errno == E2BIG;
        converted.append(buffer.data(), target);
    }
    text.remove_prefix(text.size() - left);
}

// The length of the undecodable character at the beginning of `bytes`: two for a pair of bytes to
// which the code page assigns nothing, otherwise one.
std::size_t BadLength(std::string_view bytes) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    const bool lead = (byte(0) >= 0x81 && byte(0) <= 0x9F) || (byte(0) >= 0xE0 && byte(0) <= 0xFC);
    if (!lead || bytes.size() < 2) return 1;
    return byte(1) >= 0x40 && byte(1) <= 0xFC && byte(1) != 0x7F ? 2 : 1;
}

}  // namespace

PosixTextCodec::PosixTextCodec()
    : to_utf8_(iconv_open("UTF-8", "CP932")), from_utf8_(iconv_open("CP932", "UTF-8")) {}

PosixTextCodec::~PosixTextCodec() {
    for (const iconv_t converter : {to_utf8_, from_utf8_}) {
        if (Opened(converter)) iconv_close(converter);
    }
}

std::string PosixTextCodec::Decode(std::string_view bytes) const {
    if (IsAscii(bytes)) return std::string(bytes);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 2);
    if (!Opened(to_utf8_)) {
        for (const char c : bytes) AppendUtf8(text, IsAscii({&c, 1}) ? c : kReplacementCharacter);
        return text;
    }
    AppendConverted(text, to_utf8_, bytes);
    while (!bytes.empty()) {
        AppendUtf8(text, kReplacementCharacter);
        bytes.remove_prefix(BadLength(bytes));
        AppendConverted(text, to_utf8_, bytes);
    }
    return text;
}

std::optional<std::string> PosixTextCodec::Encode(std::string_view utf8) const {
    if (IsAscii(utf8)) return std::string(utf8);
    if (!Opened(from_utf8_)) return std::nullopt;
    std::string bytes;
    bytes.reserve(utf8.size());
    std::string_view rest = utf8;
    AppendConverted(bytes, from_utf8_, rest);
    // Some characters share one code; decoding shows whether one was replaced by another.
    if (!rest.empty() || Decode(bytes) != utf8) return std::nullopt;
    return bytes;
}

}  // namespace tamrin
