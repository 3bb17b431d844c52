#pragma once

#include <optional>
#include <string>
#include <string_view>

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

// Whether `text` begins with `prefix` under the same comparison.
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix);

}  // namespace tamrin
