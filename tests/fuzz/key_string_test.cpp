#include "player/key_string.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"
#include "player/input_data.h"

namespace tamrin {
namespace {

TEST(KeyStringFuzz, EveryStrokeIsOneKey) {
    RandomBytes random;
    for (int round = FuzzRounds(20000); round > 0; --round) {
        const std::string text = random.Text(40, {"{", "}", "(", ")", "+", "^", "%", "~", "{TAB}",
                                                  "{LEFT 3}", "{あ 2}", "F12", "9"});
        std::string why;
        const auto strokes = ParseKeyString(text, why);
        EXPECT_EQ(strokes.has_value(), why.empty()) << text;
        if (!strokes) continue;
        for (const KeyStroke& stroke : *strokes) {
            EXPECT_NE(stroke.text.empty(), stroke.name.empty()) << text;
        }
    }
}

TEST(KeyStringFuzz, ATextIsTypedAsItStands) {
    RandomBytes random;
    for (int round = FuzzRounds(10000); round > 0; --round) {
        std::string text;
        for (std::size_t i = random.Below(40); i > 0; --i) {
            text += static_cast<char>(' ' + random.Below(95));
        }
        std::string why;
        const auto strokes = ParseKeyString(KeyStringOf(text), why);
        ASSERT_TRUE(strokes) << text << why;
        std::string typed;
        for (const KeyStroke& stroke : *strokes) typed += stroke.text;
        EXPECT_EQ(typed, text);
    }
}

TEST(InputDataFuzz, ReadersTakeAnyText) {
    RandomBytes random;
    for (int round = FuzzRounds(20000); round > 0; --round) {
        const std::string text =
            random.Text(40, {"%%", "%%comma%%", "%%DBLQ%%", "%%error%%", "%%clipboard%%", "\"", " ",
                             "1e999", "-", ".5", "true", "99999999999999999999"});
        ExpandReservedTexts(text, {[] { return "%%clipboard%%"; }, "%%error%%"});
        EXPECT_LE(FirstToken(text).size(), text.size());
        EXPECT_LE(LeadingNumber(text), 2147483647.0) << text;
        EXPECT_GE(LeadingNumber(text), -2147483647.0) << text;
        TruthValue(text);
    }
}

}  // namespace
}  // namespace tamrin
