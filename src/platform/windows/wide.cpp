#include "platform/windows/wide.h"

#include <windows.h>

namespace tamrin {

std::wstring Wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    // Never more units than bytes.
    std::wstring wide(utf8.size(), L'\0');
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the size is passed too
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Utf8(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    const int capacity = 3 * size;  // a unit takes up to three bytes, a surrogate pair four
    std::string utf8(static_cast<std::size_t>(capacity), '\0');
    // NOLINTBEGIN(bugprone-suspicious-stringview-data-usage): the size is passed too
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), capacity, nullptr, nullptr);
    // NOLINTEND(bugprone-suspicious-stringview-data-usage)
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

}  // namespace tamrin
