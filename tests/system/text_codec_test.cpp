#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/utf8.h"
#include "system_under_test.h"

namespace tamrin::test {
namespace {

const SystemTextCodec codec;

TEST(Decode, MarksBytesThatAreNoCharacter) {
    const struct {
        const char* bytes;
        const char* text;
    } rows[] = {
        {"a\\~\t\x7F", "a\\~\t\x7F"},
        {"\x93\xFA\x96\x7B\x83\x5C\xB1\x81\x60", "日本ソｱ～"},
        {"\x80\xA0\xFD\xFF", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\x85\x40x", "\uFFFDx"},           // a pair without a character
        {"\x93\x30\xFA", "\uFFFD0\uFFFD"},  // no second byte, and none at the end
        {"\x93\r\n", "\uFFFD\r\n"},
    };
    for (const auto& row : rows) EXPECT_EQ(codec.Decode(row.bytes), row.text);
}

TEST(Encode, AnswersOnlyWhatComesBackTheSame) {
    // Among them characters for which the code page has a look-alike.
    for (const char* lost : {"¥", "‾", "—", "−", "〜", "‖", "¢", "é", "😀", "\u0080", "\uFEFF",
                             "\uFFFD", "日\xFF", "\xE6\x97"}) {
        EXPECT_EQ(codec.Encode(std::string("日本") + lost), std::nullopt) << lost;
    }
    int pairs = 0;
    for (unsigned code = 0; code < 0x10000; ++code) {
        const char pair[] = {static_cast<char>(code >> 8U), static_cast<char>(code)};
        const std::string text = codec.Decode({pair, 2});
        if (text.find("\uFFFD") != text.npos) continue;
        ASSERT_EQ(codec.Decode(codec.Encode(text).value_or("")), text) << code;
        pairs += ReadUtf8(text, 0).length == text.size();
    }
    // JIS X 0208, the extensions of NEC (two) and IBM, the user-defined area.
    EXPECT_EQ(pairs, 6879 + 83 + 374 + 388 + 1880);
}

}  // namespace
}  // namespace tamrin::test
