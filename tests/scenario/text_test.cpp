#include "platform/text.h"

#include <gtest/gtest.h>

namespace tamrin {
namespace {

TEST(EqualsIgnoreCase, FoldsLettersOfBothWidthsAndNothingElse) {
    const struct {
        const char* a;
        const char* b;
        bool equal;
    } rows[] = {
        {"", "", true},
        {"Act", "aCT", true},
        {"azAZ09", "AZaz09", true},
        {"id", "id ", false},
        {"@", "`", false},  // 32 apart as the letters are
        {"[", "{", false},
        {"ＡＺａｚ", "ａｚＡＺ", true},
        {"日本xＱ", "日本Xｑ", true},
        {"Ａ", "A", false},   // the widths differ
        {"＠", "｀", false},  // neighbours of the full-width letters
        {"［", "｛", false},
        {"ア", "ｱ", false},
        {"Ä", "ä", false},
        {"\xBC\xA1", "\xBD\x81", false},  // the end of a full-width letter without its beginning
        {"\xEF\xBC", "\xEF\xBD", false},  // and the reverse
    };
    for (const auto& row : rows) {
        EXPECT_EQ(EqualsIgnoreCase(row.a, row.b), row.equal) << row.a << " / " << row.b;
        EXPECT_EQ(EqualsIgnoreCase(row.b, row.a), row.equal) << row.b << " / " << row.a;
    }
}

TEST(StartsWithIgnoreCase, ComparesNoFurtherThanThePrefix) {
    EXPECT_TRUE(StartsWithIgnoreCase("JavaScript:x", "javascript:"));
    EXPECT_TRUE(StartsWithIgnoreCase("x", ""));
    EXPECT_FALSE(StartsWithIgnoreCase("java", "javascript:"));
    EXPECT_FALSE(StartsWithIgnoreCase("java script:", "javascript:"));
}

}  // namespace
}  // namespace tamrin
