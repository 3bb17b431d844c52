#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

// The text encoding of files: Shift-JIS as Windows knows it (code page 932, with the extensions of
// NEC and IBM and the user-defined area). Inside the program all text is UTF-8.
class TextCodec {
public:
    virtual ~TextCodec() = default;

    // Answers the text of code page 932 bytes as UTF-8. Bytes that are no character become U+FFFD.
    virtual std::string Decode(std::string_view bytes) const = 0;

    // Answers the bytes of a UTF-8 text, or nothing when any character of it would not come back
    // from Decode as itself. Never substitutes.
    virtual std::optional<std::string> Encode(std::string_view utf8) const = 0;
};

// Whether two UTF-8 texts are equal when the letters A to Z and a to z count as the same, in their
// ordinary and in their full-width forms. Every other character equals only itself. This is the
// comparison of record keys, element attributes and tag names.
bool EqualsIgnoreCase(std::string_view a, std::string_view b);

// Whether `text` begins with `prefix`, or ends with `suffix`, under the same comparison.
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);
bool EndsWithIgnoreCase(std::string_view text, std::string_view suffix);

// The text with its letters A to Z in lower case, or a to z in upper case. All other characters
// stay as they are, full-width letters too.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// The white space of a page: blank, tab and line ends.
inline constexpr std::string_view kWhiteSpace = " \t\r\n";

// A text without the characters of `blanks` at its two ends; "" when it has no others.
std::string_view Trim(std::string_view text, std::string_view blanks = " ");

// The text with each `from`, searched from the front, replaced by `to`. `from` must not be empty.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

// What ends a line: LF or CR LF as in texts that people exchange, or a CR alone as well, as in
// files of any origin.
enum class LineEnds { kLf, kAny };

// Takes the first line and its end off `text`, and answers the line without its end.
std::string_view TakeLine(std::string_view& text, LineEnds ends);

// The lines of a text that people exchange (the clipboard, a text box). A text that ends in a line
// end has one more line, which is empty. An empty text is one empty line.
std::vector<std::string> SplitLines(std::string_view text);

// The lines joined by CR LF, with none behind the last one.
std::string JoinLines(const std::vector<std::string>& lines);

}  // namespace tamrin
