// Each kind of field, by mouse and by keyboard.

#include "recording/recording_fixture.h"

namespace tamrin::test {
namespace {

constexpr const char* kFields = R"(
<form action=/done method=post>
<p><input id=name name=name type=text> <input id=kana name=kana>
<p><input id=pass name=pass type=password> <input id=mail name=mail type=email>
<p><textarea id=memo name=memo></textarea>
<p><select id=city name=city><option>東京<option>大阪<option>福岡</select>
<select id=pay name=pay><option>銀行<option>カード</select>
<p><input type=radio id=r1 name=when value=am><input type=radio id=r2 name=when value=pm>
<input type=checkbox id=gift name=gift>
<p><input type=submit id=send value=送信>
</form>)";

TEST_F(RecordingTest, RecordsEachKindOfField) {
    ServePage("/", kFields);
    ServePage("/done", "<p>受付");
    Record("/");
    ClickOn("name");
    desk().Type("Tokyo, 1-2");
    ClickOn("kana");
    desk().Compose({"6771", "4eac"});
    desk().Press({"Tab"});
    desk().Type("p#9");
    desk().Press({"Tab"});
    desk().Type("a@b.jp");
    ClickOn("memo");
    desk().Compose({"4e00", "884c"});
    desk().Press({"Return"});
    desk().Type("b");
    Choose("city", 2);
    desk().Press({"Tab", "Down", "Tab", "space", "Right"});
    ClickOn("gift");
    ClickOn("send");
    See("/done");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=name,type=text,indt=Tokyo\x01 1-2",
                                  "input\t,id=kana,type=text,indt=東京",
                                  "input\t,id=pass,type=password,indt=p#9",
                                  "input\t,id=mail,type=email,indt=a@b.jp",
                                  "input\t,id=memo,type=textarea,indt=一行\002b",
                                  "input\t,id=city,type=select-one,indt=2",
                                  "input\t,id=pay,type=select-one,indt=1",
                                  "input\t,id=r1,type=radio,indt=True",
                                  "input\t,id=r2,type=radio,indt=True",
                                  "input\t,id=gift,type=checkbox,indt=True",
                                  "click\t,id=send,type=submit,indt=送信",
                              }));
    EXPECT_NE(output().find("パスワードが含まれています"), std::string::npos) << output();
    PlayBack();
}

// Older pages name their fields, and give ids to none.
TEST_F(RecordingTest, RecordsAFormWithoutIds) {
    ServePage("/", R"(
<form action=/done><table><tr><td><input name=q><td><select name=n><option>1<option>2</select>
<td><input type=radio name=r value=x data-place=x><input type=radio name=r value=y data-place=y>
<td><input type=submit value=検索 data-place=go></table></form>)");
    ServePage("/done", "<p>結果");
    Record("/");
    ClickOn("q");
    desk().Type("kensaku");
    desk().Press({"Tab", "Down"});
    ClickOn("y");
    ClickOn("go");
    See("/done");
    EXPECT_EQ(EndRecording(), (Lines{
                                  "url\t,id=,indt=/",
                                  "input\t,id=q,type=text,indt=kensaku",
                                  "input\t,id=n,type=select-one,indt=1",
                                  "input\t,id=r,type=radio,indt=True,value=y",
                                  "click\t,id=,type=submit,indt=検索",
                              }));
    PlayBack();
}

// The second visit to the first field changes nothing, nor do those to the filled one.
class ChangesOnlyTest : public RecordingTest {
protected:
    Lines Visit(const std::string& setting) {
        Configure("rec change only = " + setting + "\r\n");
        ServePage("/", "<input id=a><input id=b value=old><input id=c>");
        Record("/");
        ClickOn("a");
        desk().Press({"x", "Tab", "Tab", "z"});
        ClickOn("a");
        desk().Press({"Tab", "shift+Tab", "Tab"});
        return EndRecording();
    }
};

TEST_F(ChangesOnlyTest, RecordsWhatWasChangedWhereAskedTo) {
    EXPECT_EQ(Visit("1"), (Lines{
                              "url\t,id=,indt=/",
                              "input\t,id=a,type=text,indt=x",
                              "input\t,id=c,type=text,indt=z",
                          }));
}

TEST_F(ChangesOnlyTest, RecordsEachFieldThatIsLeftOtherwise) {
    EXPECT_EQ(Visit("0"), (Lines{
                              "url\t,id=,indt=/",
                              "input\t,id=a,type=text,indt=x",
                              "input\t,id=b,type=text,indt=old",
                              "input\t,id=c,type=text,indt=z",
                              "input\t,id=a,type=text,indt=x",
                              "input\t,id=b,type=text,indt=old",
                              "input\t,id=a,type=text,indt=x",
                          }));
}

TEST_F(RecordingTest, RecordsAFieldOnceThatIsLeftTwice) {
    ServePage("/", "<input id=a><p data-place=page>x");
    Record("/");
    ClickOn("a");
    desk().Type("x");
    ClickOn("page");
    ClickOn("a");
    ClickOn("page");
    EXPECT_EQ(EndRecording(), (Lines{"url\t,id=,indt=/", "input\t,id=a,type=text,indt=x"}));
}

}  // namespace
}  // namespace tamrin::test
