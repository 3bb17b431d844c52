#include "scenario/record.h"

#include <gtest/gtest.h>

#include "platform/browser.h"

namespace tamrin {
namespace {

TEST(GetRecordItem, AnswersTheFirstItemOfThatKey) {
    const struct {
        const char* line;
        const char* key;
        const char* value;
    } rows[] = {
        {"click\t,id=btn,type=submit,indt=", "Act", "click"},
        {"click\t,id=btn,type=submit,indt=", "id", "btn"},
        {"click\t,id=btn,type=submit,indt=", "type", "submit"},
        {"click\t,id=btn,type=submit,indt=", "indt", ""},
        {"click\t,id=btn,type=submit,indt=", "userwait", ""},
        {"input\t,id=q,indt=x", "InDt", "x"},
        {"input\t,ID=q,ＩＤ=w", "ｉｄ", "w"},
        {"input\t,id=q,id=w", "id", "q"},
        {"input\t,id=q,indt=a=b=c", "indt", "a=b=c"},
        {"input\t,id=q,indt=a=b=c", "indt=a", "b=c"},
        {"input\t,id=q,indt=cut,here", "indt", "cut"},
        {"input\t,id=q,indt=cut\there", "indt", "cut"},
        {"input\t,id2=q", "id", ""},     // a longer key
        {"input\t,id", "id", ""},        // no "="
        {"input\t, id=q", "id", ""},     // a blank before the key
        {"id=act\t,id=q", "id", "act"},  // the first column is searched, too
        {"quit", "ACT", "quit"},
        {"quit", "id", ""},
        {"quit", "", ""},
        {"act\tbetween,id=q", "", "between"},
        {"act\t,id=q", "", ""},
        {"a,b,c", "", "b"},
        {"", "Act", ""},
        {"", "id", ""},
        {"", "", ""},
        {"\t,,,=empty", "id", ""},
        {"x\t,a,b=1", "a,b", ""},  // no key spans a separator
        {"x\t,=1", "", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetRecordItem(row.line, row.key), row.value) << row.line << " / " << row.key;
        const auto item = [&](const char* key) { return GetRecordItem(row.line, key); };
        EXPECT_EQ(ParseRecord(row.line),
                  (Record{item("Act"), item("id"), item("type"), item("size_bar"), item("indt"),
                          item("userwait"), item("value"), item("")}))
            << row.line;
    }
}

TEST(EncodeItemValue, KeepsCommasAndLinesOutOfTheRecord) {
    EXPECT_EQ(EncodeItemValue("a,b\r\nc\rd\ne"),
              "a\x01"
              "b\x02"
              "c\rd\ne");
    EXPECT_EQ(DecodeItemValue("a\x01"
                              "b\x02"
                              "c"),
              "a,b\r\nc");
    EXPECT_EQ(DecodeItemValue("a%%comma%%b"), "a%%comma%%b");
}

TEST(EncodeComma, EscapesCommas) {
    EXPECT_EQ(EncodeComma("1,5 ,"), "1&#44;5 &#44;");
    EXPECT_EQ(DecodeComma("1&#44;5&nbsp;"), "1,5&nbsp;");
}

TEST(BuildElementRecord, EncodesAndTrimsTheValueOnly) {
    EXPECT_EQ(BuildElementRecord("input", " q ", "text", "  hello, world\r\n "),
              "input\t,id= q ,type=text,indt=hello\x01 world\x02");
    EXPECT_EQ(BuildElementRecord("click", "btn", "submit", "   "),
              "click\t,id=btn,type=submit,indt=");
}

TEST(BuildUrlRecord, HoldsTheWindowAndTheAddress) {
    const std::string bar = BuildSizeBar({-8, 0, 1024, 768}, {true, false, true, false}, true);
    EXPECT_EQ(BuildUrlRecord(bar, "http://localhost/?a=1,2"),
              "url\t,id=,size_bar=-8.0.1024.768.10101,indt=http://localhost/?a=1\x01"
              "2");
}

}  // namespace
}  // namespace tamrin
