// Long recordings, and how they end.

#include "recording/recording_fixture.h"

namespace tamrin::test {
namespace {

// Fields, and a button behind every 49 of them.
TEST_F(RecordingTest, KeepsEachOfFiveHundredActionsInItsPlace) {
    std::string fields;
    std::vector<std::string> strokes;
    Lines lines{"url\t,id=,indt=/"};
    for (int i = 0; i < 500; ++i) {
        const std::string id = "e" + std::to_string(i);
        if (i % 50 == 49) {
            fields += "<input type=button value=x id=" + id + " onclick=\"count.value++\">";
            strokes.insert(strokes.end(), {"space", "Tab"});
            lines.push_back("click\t,id=" + id + ",type=button,indt=x");
        } else {
            const std::string letter(1, static_cast<char>('a' + i % 26));
            fields += "<input size=2 id=" + id + " name=" + id + ">";
            strokes.insert(strokes.end(), {letter, "Tab"});
            lines.push_back("input\t,id=" + id + ",type=text,indt=" + letter);
        }
    }
    strokes.emplace_back("space");
    lines.emplace_back("click\t,id=send,type=submit,indt=ok");
    ServePage("/",
              "<form action=/done method=post><input type=hidden name=count id=count value=0>" +
                  fields + "<input type=submit id=send value=ok></form>");
    ServePage("/done", "");
    Record("/");
    ClickOn("e0");
    desk().Press(strokes);
    See("/done");
    EXPECT_EQ(EndRecording(), lines);
    PlayBack();
}

const Lines kTwoFields{
    "url\t,id=,indt=/",
    "input\t,id=a,type=text,indt=x",
    "input\t,id=b,type=text,indt=y",
};

TEST_F(RecordingTest, KeepsWhatWasRecordedWhenTheBrowserDies) {
    ServePage("/", "<input id=a><input id=b>");
    Record("/");
    ClickOn("a");
    desk().Press({"x", "Tab", "y", "Tab"});
    AwaitLines(3);
    KillBrowser();
    EXPECT_EQ(Wait(), 0) << output();
    EXPECT_EQ(SavedLines(), kTwoFields);
}

// The field in which the user still stands is recorded as well.
TEST_F(RecordingTest, SavesWhatIsUnderWayAtCtrlC) {
    ServePage("/", "<input id=a><input id=b>");
    Record("/");
    ClickOn("a");
    desk().Press({"x", "Tab", "y"});
    Interrupt();
    EXPECT_EQ(Wait(), 0) << output();
    EXPECT_EQ(SavedLines(), kTwoFields);
}

}  // namespace
}  // namespace tamrin::test
