#include "app/record_fields.h"

#include <gtest/gtest.h>

#include "scenario/record.h"

namespace tamrin::test {
namespace {

TEST(ReadRecordFields, ShowsCommasAndLineEndsAsTheyWereTyped) {
    const Record fields = ReadRecordFields(
        "input\t,id=a,type=textarea,indt=1\x01"
        "2\x02%%comma%%,userwait=1&#44;5");
    EXPECT_EQ(fields, (Record{"input", "a", "textarea", "", "1,2\r\n%%comma%%", "1,5"}));
    EXPECT_EQ(ReadRecordFields("sendkeys\t{ENTER}").indt, "{ENTER}");
    EXPECT_EQ(ReadRecordFields(""), Record{});
}

TEST(RewriteRecord, PutsTheFieldsInTheirPlaces) {
    struct Row {
        const char* line;
        Record fields;
        const char* result;
    };
    const Row rows[] = {
        {"", {}, ""},
        {"// note", ReadRecordFields("// note"), "// note"},
        {"click\t,ID=b,indt=,x", ReadRecordFields("click\t,ID=b,indt=,x"), "click\t,ID=b,indt=,x"},
        {"",
         {"input", "q", "text", "", "a,b\r\nc", ""},
         "input\t,id=q,type=text,indt=a\x01"
         "b\x02"
         "c,userwait="},
        {"",
         {"url", "", "", "0.0.1.1.11111", "http://h/?a=b", ""},
         "url\t,id=,size_bar=0.0.1.1.11111,indt=http://h/?a=b,userwait="},
        {"", {"//", "", "", "", "note", "9"}, "//\t,id=,type=,indt=note"},
        {"sendkeys\t{TAB}",
         {"sendkeys", "", "", "", "{ENTER}", ""},
         "sendkeys\t,id=,type=,indt={ENTER}"},
        {"click\t,new=1,ID=a,other,userwait=2,type=button,indt=,Id=z",
         {"click", "b", "button", "", "", "3,5"},
         "click\t,new=1,id=b,other,type=button,indt=,userwait=3&#44;5"},
        {"url\t,id=,size_bar=1.2.3.4.5,indt=x",
         {"navigate", "", "", "", "y", ""},
         "navigate\t,id=,indt=y,type=,userwait="},
        {"click",
         {"click", "a\tb", "", "", "x\ny\rz", ""},
         "click\t,id=a b,type=,indt=x\x02y\x02z,userwait="},
        {"click,id=a", {"click", "b", "", "", "", ""}, "click\t,id=b,type=,indt=,userwait="},
        {"click\thead,id=a",
         {"click", "b", "", "", "", ""},
         "click\thead,id=b,type=,indt=,userwait="},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(RewriteRecord(row.line, row.fields), row.result) << row.line;
    }
}

TEST(ActionItem, FillsTheKeywordUpToItsDescription) {
    EXPECT_EQ(Actions().size(), 11U);
    EXPECT_EQ(ActionItem("//"), "//               'コメント");
    EXPECT_EQ(ActionItem("sendkeys-if-busy"), "sendkeys-if-busy 'ビジー時キー入力");
    EXPECT_EQ(ActionItem("wait"), "wait             '指定時間ミリ秒)待機");
    EXPECT_EQ(ActionItem("noevent"), "noevent");
    for (const ActionName& action : Actions()) {
        EXPECT_EQ(ActionOfItem(ActionItem(action.keyword)), action.keyword);
    }
    EXPECT_EQ(ActionOfItem("  a,b"), "a");
}

}  // namespace
}  // namespace tamrin::test
