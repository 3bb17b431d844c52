#include "platform/text.h"

namespace tamrin {
namespace {

unsigned char FoldAscii(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

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
        if (a[i] == b[i] || FoldAscii(a[i]) == FoldAscii(b[i])) continue;
        if (!IsFullWidthPair(a, b, i) && !IsFullWidthPair(b, a, i)) return false;
        ++i;
    }
    return true;
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

}  // namespace tamrin
