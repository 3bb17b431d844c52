#include "app/console_recording.h"

#include <gtest/gtest.h>

#include <sstream>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class RecordToFileTest : public MainWindowTest {
protected:
    RecordToFileTest() {
        web.pages["page"] = "<input id=q type=text>";
        browsers.opens = browser;
        window.Form_Load("");
    }
    ExitCode Record() {
        return RecordToFile(
            window, {windows, clock, files, codec, processes, web, browsers}, "new.csv", "page",
            [this] { return interrupted; }, output);
    }
    void At(int milliseconds, std::function<void()> act) {
        clock.At(clock.Elapsed() + static_cast<std::uint64_t>(milliseconds), std::move(act));
    }

    std::shared_ptr<ScriptedBrowser> browser = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, browser};
    bool interrupted = false;
    std::ostringstream output;
    const std::string kSaved =
        "url\t,id=,size_bar=0.0.1024.768.11110,indt=page\r\ninput\t,id=q,type=text,indt=x\r\n";
    static constexpr const char* kPath = "C:\\work\\new.csv";
};

TEST_F(RecordToFileTest, SavesWhatWasRecordedUntilTheBrowserIsClosed) {
    At(500, [&] {
        user.Type("q", "x");
        user.Focus("");
    });
    At(900, [&] {
        EXPECT_EQ(files.contents["C:\\work\\new.csv.recovery"], kSaved);
        browser->Die();
    });
    EXPECT_EQ(Record(), kPlayed);
    EXPECT_EQ(files.contents[kPath], kSaved);
    EXPECT_FALSE(files.contents.contains("C:\\work\\new.csv.recovery"));
    EXPECT_TRUE(window.Close());
}

TEST_F(RecordToFileTest, SavesWhatIsUnderWayWhenInterrupted) {
    At(500, [&] {
        user.Type("q", "x");
        interrupted = true;
    });
    EXPECT_EQ(Record(), kPlayed);
    EXPECT_EQ(files.contents[kPath], kSaved);
}

TEST_F(RecordToFileTest, TellsWhyNothingIsSaved) {
    At(500, [&] { interrupted = true; });
    dialogs.answers = {Answer::kOk, Answer::kOk};
    EXPECT_EQ(Record(), kNothing);
    EXPECT_FALSE(files.contents.contains(kPath));
    browsers.refusal = "見つかりません。";
    EXPECT_EQ(Record(), kNotStarted);
    EXPECT_EQ(dialogs.shown,
              (Lines{"Tamrin|記録はありません。", "ブラウザを起動できません|見つかりません。"}));
}

TEST_F(RecordToFileTest, KeepsTheRecordsThatCannotBeSaved) {
    files.contents[kPath] = "old";
    files.locked.insert(kPath);
    At(500, [&] {
        user.Type("q", "x");
        interrupted = true;
    });
    dialogs.answers = {Answer::kOk};
    EXPECT_EQ(Record(), kNotSaved);
    EXPECT_EQ(files.contents["C:\\work\\new.csv.recovery"], kSaved);
}

}  // namespace
}  // namespace tamrin::test
