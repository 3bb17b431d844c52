#include "app/console_recording.h"

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
            window, platform, "new.csv", "page", [this] { return interrupted; }, output);
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
    After(500, [&] {
        user.Type("q", "x");
        user.Focus("");
    });
    After(900, [&] {
        EXPECT_EQ(files.contents["C:\\work\\new.csv.recovery"], kSaved);
        browser->Die();
    });
    EXPECT_EQ(Record(), kPlayed);
    EXPECT_EQ(files.contents[kPath], kSaved);
    EXPECT_FALSE(files.contents.contains("C:\\work\\new.csv.recovery"));
    EXPECT_TRUE(window.Close());
}

TEST_F(RecordToFileTest, TellsWhyNothingIsSaved) {
    dialogs.answers = {kOk, kOk, kOk};
    interrupted = true;
    EXPECT_EQ(Record(), kNothing);
    EXPECT_FALSE(files.contents.contains(kPath));
    browsers.refusal = "見つかりません。";
    EXPECT_EQ(Record(), kNotStarted);
    EXPECT_EQ(dialogs.shown,
              (Lines{"Tamrin|記録はありません。", "ブラウザを起動できません|見つかりません。"}));
    browsers.refusal.clear();
    interrupted = false;
    files.locked.insert(kPath);
    After(500, [&] {
        user.Type("q", "x");
        interrupted = true;
    });
    EXPECT_EQ(Record(), kNotSaved);
    EXPECT_EQ(files.contents["C:\\work\\new.csv.recovery"], kSaved) << "the records are kept";
}

}  // namespace
}  // namespace tamrin::test
