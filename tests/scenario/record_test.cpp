#include "scenario/record.h"

#include <gtest/gtest.h>

#include "platform/browser.h"
#include "platform/text.h"

namespace tamrin {
namespace {

TEST(EqualsIgnoreCase, FoldsLettersOfBothWidthsAndNothingElse) {
    const std::tuple<const char*, const char*, bool> rows[] = {
        {"azAZ09", "AZaz09", true},
        {"@[", "`{", false},  // 32 apart as the letters are
        {"ＡＺａｚ", "ａｚＡＺ", true},
        {"日本xＱ", "日本Xｑ", true},
        {"Ａ", "A", false},
        {"＠", "｀", false},  // neighbours of the full-width letters
        {"［", "｛", false},
        {"\xBC\xA1", "\xBD\x81", false},  // the end of a full-width letter without its beginning
        {"\xEF\xBC", "\xEF\xBD", false},  // and the reverse
    };
    for (const auto& [a, b, equal] : rows) {
        EXPECT_EQ(EqualsIgnoreCase(a, b), equal) << a << " / " << b;
        EXPECT_EQ(EqualsIgnoreCase(b, a), equal) << b << " / " << a;
    }
    EXPECT_TRUE(StartsWithIgnoreCase("JavaScript:x", "javascript:"));
    EXPECT_FALSE(StartsWithIgnoreCase("java", "javascript:"));
}

TEST(GetRecordItem, AnswersTheFirstItemOfThatKey) {
    const std::array<const char*, 3> rows[] = {
        {"click\t,id=btn,type=submit,indt=", "Act", "click"},
        {"click\t,id=btn,type=submit,indt=", "type", "submit"},
        {"input\t,ID=q,ＩＤ=w", "ｉｄ", "w"},
        {"input\t,id=q,id=w", "ID", "q"},
        {"input\t,id=q,indt=a=b=c", "indt=a", "b=c"},
        {"input\t,id=q,indt=cut,here", "indt", "cut"},
        {"input\t,id=q,indt=cut\there", "indt", "cut"},
        {"input\t,id2=q,id", "id", ""},  // a longer key, and one without "="
        {"input\t, id=q", "id", ""},     // a blank before the key
        {"id=act\t,id=q", "id", "act"},  // the first column is searched, too
        {"quit", "ACT", "quit"},
        {"act\tbetween,id=q", "", "between"},
        {"", "Act", ""},
        {"\t,,,=empty", "id", ""},
        {"x\t,a,b=1", "a,b", ""},  // no key spans a separator
    };
    for (const auto& [line, key, value] : rows) {
        EXPECT_EQ(GetRecordItem(line, key), value) << line << " / " << key;
        const auto item = [text = line](const char* name) { return GetRecordItem(text, name); };
        EXPECT_EQ(ParseRecord(line),
                  (Record{item("Act"), item("id"), item("type"), item("size_bar"), item("indt"),
                          item("userwait"), item("value"), item("")}))
            << line;
    }
}

TEST(Record, IsBuiltOfEncodedItems) {
    const std::string encoded = "a\1b\2c\rd\ne";
    EXPECT_EQ(EncodeItemValue("a,b\r\nc\rd\ne"), encoded);
    EXPECT_EQ(DecodeItemValue(encoded + "%%comma%%"), "a,b\r\nc\rd\ne%%comma%%");
    EXPECT_EQ(EncodeComma("1,5 ,"), "1&#44;5 &#44;");
    EXPECT_EQ(DecodeComma("1&#44;5&nbsp;"), "1,5&nbsp;");
    EXPECT_EQ(BuildElementRecord("input", " q ", "text", "  hello, world\r\n "),
              "input\t,id= q ,type=text,indt=hello\1 world\2");
    const std::string bar = BuildSizeBar({-8, 0, 1024, 768}, {true, false, true, false}, true);
    EXPECT_EQ(BuildUrlRecord(bar, "http://localhost/?a=x,y"),
              "url\t,id=,size_bar=-8.0.1024.768.10101,indt=http://localhost/?a=x\1y");
}

}  // namespace
}  // namespace tamrin
