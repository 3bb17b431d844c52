#include "platform/text.h"

#include <algorithm>

namespace tamrin {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Whether the full-width letter whose second byte stands at `at` is the capital in `upper` and the
// same letter's small form in `lower`. In UTF-8, U+FF21..FF3A are EF BC A1..BA and U+FF41..FF5A are
// EF BD 81..9A.
bool IsFullWidthPair(std::string_view upper, std::string_view lower, std::size_t at) {
    if (at == 0 || upper.size() - at < 2) return false;
    const auto last = static_cast<unsigned char>(upper[at + 1]);
    return upper[at - 1] == '\xEF' && upper[at] == '\xBC' && lower[at] == '\xBD' && last >= 0xA1U &&
           last <= 0xBAU && static_cast<unsigned char>(lower[at + 1]) == last - 0x20U;
}

}  // namespace

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    // Both forms of a letter take the same number of bytes, so texts of different length differ,
    // and the texts run side by side: what stands before `i` is equal up to letter case.
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] == b[i] || Lower(a[i]) == Lower(b[i])) continue;
        if (!IsFullWidthPair(a, b, i) && !IsFullWidthPair(b, a, i)) return false;
        ++i;
    }
    return true;
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

bool EndsWithIgnoreCase(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() &&
           EqualsIgnoreCase(text.substr(text.size() - suffix.size()), suffix);
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Lower);
    return result;
}

std::string UpperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Upper);
    return result;
}

std::string_view Trim(std::string_view text, std::string_view blanks) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string replaced;
    replaced.reserve(text.size());
    std::size_t begin = 0;
    for (std::size_t at = text.find(from); at != text.npos; at = text.find(from, begin)) {
        replaced.append(text, begin, at - begin).append(to);
        begin = at + from.size();
    }
    return replaced.append(text, begin);
}

std::string_view TakeLine(std::string_view& text, LineEnds ends) {
    const auto is_end = [&](char c) { return c == '\n' || (c == '\r' && ends == LineEnds::kAny); };
    const auto end = std::find_if(text.begin(), text.end(), is_end);
    std::string_view line = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(line.size());
    if (text.empty()) return line;
    text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    if (ends == LineEnds::kLf && line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    bool ended = true;  // the line before; another one follows then
    while (ended) {
        ended = text.find('\n') != std::string_view::npos;
        lines.emplace_back(TakeLine(text, LineEnds::kLf));
    }
    return lines;
}

std::string JoinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (&line != &lines.front()) text += "\r\n";
        text += line;
    }
    return text;
}

}  // namespace tamrin
