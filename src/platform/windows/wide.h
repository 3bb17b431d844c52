#pragma once

#include <string>
#include <string_view>

namespace tamrin {

// Windows uses UTF-16, the program UTF-8. Invalid text on one side becomes U+FFFD on the other.
std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

// The text that a call such as GetCurrentDirectoryW writes. `read(buffer, size)` answers the length
// of the text; at least `size` when the buffer is too small; 0 on failure, which gives an empty
// text.
template <typename Read>
std::wstring ReadWide(Read read) {
    std::wstring text(260, L'\0');
    for (;;) {
        const auto length = static_cast<std::size_t>(read(text.data(), text.size()));
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(2 * length);
    }
}

}  // namespace tamrin
