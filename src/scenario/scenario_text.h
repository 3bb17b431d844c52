#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

class TextCodec;

// The text of a scenario: one record per line, each ended by CR LF, in Shift-JIS. An enciphered
// scenario is the line "CIPHER" and below it that whole text as one line of the cipher.
//
// Shift-JIS lacks many characters, and some characters would break the lines. The file holds their
// code points as reserved texts, U+1F600 as "%%U+1F600%%", so that nothing is lost. A "%%U+" in a
// record itself is written as "%%U+25%%%U+".

// Answers the bytes of a file from which ReadScenarioText reads the same lines. Bytes that are not
// UTF-8 become U+FFFD.
std::string WriteScenarioText(const std::vector<std::string>& lines, const TextCodec& codec,
                              bool cipher);

// Answers the lines of a scenario file, plain or enciphered, as UTF-8. Lines end in CR LF, LF or
// CR; the last one may have no end. A file that begins with the UTF-8 byte order mark, as some
// editors write it, is read as UTF-8. Never fails: damaged bytes become U+FFFD, a damaged cipher
// garbage.
std::vector<std::string> ReadScenarioText(std::string_view bytes, const TextCodec& codec);

// Answers the lines of a plain scenario text in UTF-8, for example from the command line.
std::vector<std::string> ScenarioTextLines(std::string_view text);

}  // namespace tamrin
