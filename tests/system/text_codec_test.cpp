#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/utf8.h"
#include "system/system_under_test.h"

namespace tamrin::test {
namespace {

const std::unique_ptr<TextCodec> codec = MakeTextCodec();

TEST(Decode, AnswersEveryCharacterOfCodePage932) {
    const struct {
        const char* bytes;
        const char* text;
    } rows[] = {
        {"a\\~\t\x7F", "a\\~\t\x7F"},
        {"\x93\xFA\x96\x7B", "日本"},
        {"\x83\x5C\x95\x5C", "ソ表"},  // the second byte is a backslash
        {"\xB1\xDF", "ｱﾟ"},
        {"\x87\x40\xED\x40\xFA\x40\xFC\x4B", "①纊ⅰ黑"},  // extensions of NEC and IBM
        {"\xF0\x40\xF9\xFC", "\uE000\uE757"},            // user-defined area
        {"\x81\x60\x81\x7C", "～－"},
        {"\x80\xA0\xFD\xFF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\x85\x40x", "\uFFFDx"},           // a pair without a character
        {"\x93\x30\xFA", "\uFFFD0\uFFFD"},  // no second byte, and none at the end
        {"\x93\r\n", "\uFFFD\r\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(codec->Decode(row.bytes), row.text);
}

TEST(Encode, AnswersOnlyWhatComesBackTheSame) {
    const std::string text = "a\\~①ソ表纊ⅰ\uE000ｱ～－";
    EXPECT_EQ(codec->Decode(codec->Encode(text).value_or("")), text);
    // Among them characters for which the code page has a look-alike.
    for (const char* lost : {"¥", "‾", "—", "−", "〜", "‖", "¢", "é", "😀", "\u0080", "\uFEFF",
                             "\uFFFD", "日\xFF", "\xE6\x97"}) {
        EXPECT_EQ(codec->Encode(lost), std::nullopt) << lost;
        EXPECT_EQ(codec->Encode(std::string("日本") + lost), std::nullopt) << lost;
    }
}

TEST(Encode, IsExactForEveryPairOfBytes) {
    int pairs = 0;
    for (unsigned lead = 0; lead < 256; ++lead) {
        for (unsigned trail = 0; trail < 256; ++trail) {
            const char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
            const std::string text = codec->Decode({pair, 2});
            if (text.find("\uFFFD") != text.npos) continue;
            const auto bytes = codec->Encode(text);
            ASSERT_TRUE(bytes) << text;
            ASSERT_EQ(codec->Decode(*bytes), text);
            pairs += ReadUtf8(text, 0).length == text.size();
        }
    }
    // JIS X 0208, the extensions of NEC (two) and IBM, the user-defined area.
    EXPECT_EQ(pairs, 6879 + 83 + 374 + 388 + 1880);
}

}  // namespace
}  // namespace tamrin::test
