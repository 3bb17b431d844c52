#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tamrin {

// Replaces bytes that are no valid character.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// One character of a UTF-8 text and its length in bytes.
struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 0;

    bool operator==(const Utf8Character&) const = default;
};

// Whether `code` is a Unicode scalar value: a code point that is no surrogate.
constexpr bool IsScalarValue(char32_t code) {
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

// Whether every byte is below 128.
bool IsAscii(std::string_view text);

// Answers the character of `text` that begins at byte `at`, which must lie inside. A byte that
// begins no valid character (cut off, overlong, surrogate) answers U+FFFD of length 1.
Utf8Character ReadUtf8(std::string_view text, std::size_t at);

// Appends the character, or U+FFFD when `code` is no scalar value.
void AppendUtf8(std::string& text, char32_t code);

// The length of the longest beginning of a valid text that has at most `limit` bytes and ends with
// a whole character.
std::size_t CutLength(std::string_view text, std::size_t limit);

// Answers the text with every byte that belongs to no valid character replaced by U+FFFD.
std::string ValidUtf8(std::string_view text);

}  // namespace tamrin
