#include "platform/text.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"

namespace tamrin {
namespace {

// Every capital of both widths exchanged for its small letter.
std::string Folded(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] >= 'A' && text[i] <= 'Z') text[i] = static_cast<char>(text[i] + 32);
        if (text.compare(i, 2, "\xEF\xBC") == 0 && i + 2 < text.size() && text[i + 2] >= '\xA1' &&
            text[i + 2] <= '\xBA') {
            text[i + 1] = '\xBD';
            text[i + 2] = static_cast<char>(text[i + 2] - 32);
        }
    }
    return text;
}

TEST(EqualsIgnoreCase, ComparesTheFoldedTexts) {
    RandomBytes random;
    for (int round = FuzzRounds(20000); round > 0; --round) {
        const auto words = {"a", "A", "Ａ", "ａ", "Ｚ", "［", "ｚ", "日"};
        std::string a;
        std::string b;
        for (std::size_t i = random.Below(4); i > 0; --i) {
            a += words.begin()[random.Below(words.size())];
            b += words.begin()[random.Below(words.size())];
        }
        ASSERT_EQ(EqualsIgnoreCase(a, b), Folded(a) == Folded(b)) << a << " / " << b;
        const std::string text = random.Text(30, {"A", "ａ", "\xEF\xBC", "\xBD", "\xEF"});
        std::string other = text;
        if (!other.empty()) other[random.Below(other.size())] ^= 0x20;
        ASSERT_EQ(EqualsIgnoreCase(text, other), Folded(text) == Folded(other)) << text;
        ASSERT_TRUE(StartsWithIgnoreCase(text + other, Folded(text)));
    }
}

}  // namespace
}  // namespace tamrin
