#pragma once

#include <string>
#include <string_view>

namespace tamrin {

class TextCodec;

// The reserved text "%%U+1F600%%", which stands in a scenario file for a character that the file
// cannot hold as it is. One to six hexadecimal digits name the code point.

// Appends the escape of one character.
void AppendEscape(std::string& text, char32_t code);

// Appends a record with escapes for what would break the lines of a file (CR, LF, code 0) and for
// each "%%U+" of its own, so that it can hold any text.
void AppendEscaped(std::string& text, std::string_view line);

// Appends the encoded bytes of a line that AppendEscaped made, with escapes for the characters that
// the codec lacks.
void AppendEncoded(std::string& bytes, std::string_view line, const TextCodec& codec);

// Answers the line with its escapes turned back into characters, from left to right and never
// twice. What only resembles an escape stays as it is.
std::string UnescapeCharacters(std::string line);

}  // namespace tamrin
