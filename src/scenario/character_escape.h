#pragma once

#include <string>
#include <string_view>

namespace tamrin {

class TextCodec;

// The reserved text "%%U+1F600%%" replaces a character that a scenario file cannot hold. The code
// point has one to six hexadecimal digits.

// Appends the escape of one character.
void AppendEscape(std::string& text, char32_t code);

// Appends a record with escapes for characters that would break the lines of a file (CR, LF, code
// 0) and for each "%%U+" in the record itself.
void AppendEscaped(std::string& text, std::string_view line);

// Appends the encoded bytes of a line that AppendEscaped made, with escapes for the characters that
// the codec lacks.
void AppendEncoded(std::string& bytes, std::string_view line, const TextCodec& codec);

// Answers the line with each escape replaced by its character, in one pass from left to right. Text
// that only resembles an escape is not changed.
std::string UnescapeCharacters(std::string line);

}  // namespace tamrin
