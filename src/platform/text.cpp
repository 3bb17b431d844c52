#include "platform/text.h"

namespace tamrin {
namespace {

// Full-width Latin letters in UTF-8: U+FF21..FF3A are EF BC A1..BA, U+FF41..FF5A are EF BD 81..9A.
bool IsFullWidthUpper(std::string_view text, std::size_t at) {
    return text.size() - at >= 3 && text[at] == '\xEF' && text[at + 1] == '\xBC' &&
           text[at + 2] >= '\xA1' && text[at + 2] <= '\xBA';
}

// Answers one step of the folded text: one byte, or the three bytes of a full-width letter as one
// number. Advances `at`.
unsigned NextFolded(std::string_view text, std::size_t& at) {
    if (IsFullWidthUpper(text, at)) {
        const auto last = static_cast<unsigned char>(text[at + 2]);
        at += 3;
        return 0xEFBD00U + (last - 0xA1U) + 0x81U;
    }
    if (text.size() - at >= 3 && text[at] == '\xEF' && text[at + 1] == '\xBD') {
        const auto last = static_cast<unsigned char>(text[at + 2]);
        at += 3;
        return 0xEFBD00U + last;
    }
    const auto byte = static_cast<unsigned char>(text[at++]);
    return byte >= 'A' && byte <= 'Z' ? byte + 32U : byte;
}

}  // namespace

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (j < prefix.size()) {
        if (i == text.size() || NextFolded(text, i) != NextFolded(prefix, j)) return false;
    }
    return true;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    // Every folding keeps the length, so texts of different length differ.
    return a.size() == b.size() && StartsWithIgnoreCase(a, b);
}

}  // namespace tamrin
