#include "scenario/character_escape.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <system_error>

#include "platform/text.h"
#include "platform/utf8.h"

namespace tamrin {
namespace {

constexpr std::string_view kOpening = "%%U+";
constexpr std::string_view kClosing = "%%";
constexpr std::size_t kMaxDigits = 6;

// The character of the escape at the beginning of `text` and the escape's length; a length of 0
// when there is none.
Utf8Character ReadEscape(std::string_view text) {
    const char* digits = text.data() + kOpening.size();
    const char* last = digits + std::min(kMaxDigits, text.size() - kOpening.size());
    unsigned code = 0;
    const auto [end, error] = std::from_chars(digits, last, code, 16);
    const auto length = static_cast<std::size_t>(end - text.data());
    const bool closed = text.substr(length).starts_with(kClosing);
    if (error != std::errc() || !closed || !IsScalarValue(code)) return {};
    return {code, length + kClosing.size()};
}

bool BreaksLines(char c) { return c == '\r' || c == '\n' || c == '\0'; }

}  // namespace

void AppendEscape(std::string& text, char32_t code) {
    char escape[16];
    std::snprintf(escape, sizeof escape, "%%%%U+%X%%%%", static_cast<unsigned>(code));
    text += escape;
}

void AppendEscaped(std::string& text, std::string_view line) {
    for (std::size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (BreaksLines(c) || (c == '%' && line.substr(at).starts_with(kOpening))) {
            AppendEscape(text, static_cast<unsigned char>(c));
        } else {
            text += c;
        }
    }
}

void AppendEncoded(std::string& bytes, std::string_view line, const TextCodec& codec) {
    while (!line.empty()) {
        const Utf8Character character = ReadUtf8(line, 0);
        if (character.code < 0x80) {
            bytes += line.front();
        } else if (const auto encoded = codec.Encode(line.substr(0, character.length))) {
            bytes += *encoded;
        } else {
            AppendEscape(bytes, character.code);
        }
        line.remove_prefix(character.length);
    }
}

std::string UnescapeCharacters(std::string line) {
    std::size_t at = line.find(kOpening);
    if (at == line.npos) return line;
    std::string text;
    std::string_view rest = line;
    for (; at != rest.npos; at = rest.find(kOpening)) {
        const Utf8Character character = ReadEscape(rest.substr(at));
        text.append(rest, 0, at);
        if (character.length == 0) {
            text += rest[at++];
        } else {
            AppendUtf8(text, character.code);
            at += character.length;
        }
        rest.remove_prefix(at);
    }
    return text.append(rest);
}

}  // namespace tamrin
