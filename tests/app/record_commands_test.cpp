#include "app/record_commands.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class RecordTest : public MainWindowTest {
protected:
    RecordTest() {
        web.pages["shop"] =
            "<input id=q type=text><input id=pw type=password>"
            "<input id=go type=submit><a href=#>次へ</a>";
        browser->Show("shop");
        window.Form_Load("");
    }
    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.DoEvents();
            clock.Sleep(10);
        }
    }
    // A browser that the user has open, and in which they work.
    void OpenBrowser() {
        browsers.visible = {browser};
        browsers.focused = browser;
        Pass(1100);
    }
    void Press(const char* button) {
        form().Click(button);
        Pass(20);
    }
    std::string Buttons() {
        std::string buttons;
        for (const char* name : {"cmdRec", "cmdPlay", "cmdStop", "mnuRec", "mnuPlay"}) {
            buttons += Enabled(name) ? '1' : '0';
        }
        return buttons;
    }
    bool HasRecovery() { return files.contents.contains("C:\\tamrin\\Recovery.csv"); }

    std::shared_ptr<ScriptedBrowser> browser = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, browser};
    const Lines kUrl{"url\t,id=,size_bar=0.0.1024.768.11110,indt=shop"};
    const Lines kRecorded{kUrl[0], "click\t,id=go,type=submit,indt="};
    static constexpr const char* kQuestion =
        "既存データあり|現在の記録データは破棄して新規記録しますか？\r\n"
        "　「はい」→新規記録\r\n　「いいえ」→追記記録\r\n　「キャンセル」→中止";
};

TEST_F(RecordTest, RecordsFromTheButtonToTheStop) {
    OpenBrowser();
    EXPECT_EQ(Find("txtUrl").Text(), "shop");
    form().Find("optDisp", 2).SetChecked(true);
    Press("cmdRec");
    EXPECT_EQ(globals.activity, "rec");
    EXPECT_EQ(globals.settings.disp, 0);
    EXPECT_EQ(Buttons(), "00100");
    user.Type("q", "x");
    user.Click("go");
    Pass(200);
    EXPECT_EQ(Buttons(), "00100") << "records are no reason to play";
    form().Press("F5");
    Press("cmdStop");
    EXPECT_EQ(Records(), (Lines{kUrl[0], "input\t,id=q,type=text,indt=x", kRecorded[1]}));
    EXPECT_EQ(list().ListIndex(), 2);
    EXPECT_EQ(globals.activity, "");
    EXPECT_EQ(Buttons(), "11011");
    EXPECT_TRUE(globals.unsaved);
    EXPECT_EQ(browser->brought_to_front, 1);
    user.Click("go");
    user.Focus("");
    Pass(200);
    EXPECT_EQ(window.RecordCount(), 3);
}

TEST_F(RecordTest, AsksWhatBecomesOfUnsavedRecords) {
    struct Row {
        bool unsaved;
        Answer answer;
        Lines records;
    };
    const Row rows[] = {
        {true, Answer::kYes, kRecorded},
        {true, Answer::kNo, {"x", kRecorded[1]}},
        {true, Answer::kCancel, {"x"}},
        {false, Answer::kOk, {"x", kRecorded[1]}},
    };
    OpenBrowser();
    for (const Row& row : rows) {
        list().SetLines({"x"});
        globals.unsaved = row.unsaved;
        dialogs.shown.clear();
        if (row.unsaved) dialogs.answers = {row.answer};
        Press("cmdRec");
        EXPECT_EQ(globals.activity, row.answer == Answer::kCancel ? "" : "rec");
        user.Click("go");
        Pass(200);
        Press("cmdStop");
        EXPECT_EQ(Records(), row.records);
        EXPECT_EQ(dialogs.shown, row.unsaved ? Lines{kQuestion} : Lines{});
    }
}

TEST_F(RecordTest, ExplainsOnceHowToOpenABrowser) {
    const std::string message = "Tamrin|対象のWebページを表示（アクティブに）して下さい。";
    dialogs.answers = {Answer::kOk, Answer::kOk};
    Press("cmdRec");
    ASSERT_EQ(dialogs.shown.size(), 2U);
    EXPECT_EQ(dialogs.shown[0], message);
    EXPECT_TRUE(dialogs.shown[1].starts_with("記録の準備|"));
    dialogs.answers = {Answer::kOk};
    Press("cmdRec");
    EXPECT_EQ(dialogs.shown.back(), message);
    EXPECT_EQ(globals.activity, "");
    EXPECT_TRUE(Enabled("cmdRec"));
}

TEST_F(RecordTest, BringsABrowserThatIsNotActiveToTheFront) {
    browsers.visible = {browser};
    clock.At(clock.Elapsed() + 300, [&] { browsers.focused = browser; });
    Press("cmdRec");
    EXPECT_EQ(browser->brought_to_front, 1);
    EXPECT_EQ(globals.activity, "rec");
    Press("cmdStop");
}

TEST_F(RecordTest, StopsWhenTheEventsThatWaitAreRecorded) {
    OpenBrowser();
    Press("cmdRec");
    user.Click("go");
    clock.At(clock.Elapsed() + 50, [&] {
        user.Type("q", "late");
        user.Focus("");
        form().Click("cmdStop");
        EXPECT_EQ(globals.activity, "rec");
    });
    Pass(300);
    EXPECT_EQ(globals.activity, "");
    EXPECT_EQ(Records(), (Lines{kRecorded[0], kRecorded[1], "input\t,id=q,type=text,indt=late"}));
}

TEST_F(RecordTest, ClosesOnlyWhenTheRecordingIsWhole) {
    OpenBrowser();
    Press("cmdRec");
    user.Click("go");
    dialogs.answers = {Answer::kYes};
    dialogs.paths = {"C:\\new.csv"};
    clock.At(clock.Elapsed() + 50, [&] {
        user.Click("go");
        EXPECT_FALSE(window.Close());
    });
    Pass(300);
    EXPECT_TRUE(window.closed());
    EXPECT_EQ(files.contents["C:\\new.csv"], kRecorded[0] + "\r\n" + kRecorded[1] + "\r\n");
    EXPECT_FALSE(HasRecovery());
}

TEST_F(RecordTest, TellsOnceThatAScenarioHoldsAPassword) {
    OpenBrowser();
    for (int i = 0; i < 2; ++i) {
        Press("cmdRec");
        user.Type("pw", "secret" + std::to_string(i));
        user.Focus("");
        Pass(200);
        EXPECT_TRUE(dialogs.shown.empty()) << "not in the middle of the work";
        if (i == 0) dialogs.answers = {Answer::kOk};
        Press("cmdStop");
        EXPECT_EQ(dialogs.shown.size(), i == 0 ? 1U : 0U);
        dialogs.shown.clear();
        globals.unsaved = false;
    }
}

TEST_F(RecordTest, KeepsTheLinesUntilTheyAreSavedOrGivenUp) {
    OpenBrowser();
    const auto record = [&] {
        Press("cmdRec");
        EXPECT_FALSE(HasRecovery());
        user.Click("go");
        Pass(200);
        EXPECT_EQ(files.contents["C:\\tamrin\\Recovery.csv"],
                  kRecorded[0] + "\r\n" + kRecorded[1] + "\r\n");
        Press("cmdStop");
        EXPECT_TRUE(HasRecovery());
    };
    record();
    dialogs.paths = {"C:\\new.csv"};
    form().Click("mnuSave");
    EXPECT_FALSE(HasRecovery());
    form().Click("mnuNew");
    record();
    dialogs.answers = {Answer::kNo};
    form().Click("mnuNew");
    EXPECT_FALSE(HasRecovery());
}

TEST_F(RecordTest, OffersWhatACrashHasLeft) {
    const std::string question =
        "記録の復元|前回、保存されなかった記録が 2 行残っています。復元しますか？\r\n"
        "　「はい」→復元\r\n　「いいえ」→破棄";
    window.OfferRecovery();
    EXPECT_EQ(dialogs.shown, Lines{});
    files.contents["C:\\tamrin\\Recovery.csv"] = "a\r\nb\r\n";
    dialogs.answers = {Answer::kYes};
    window.OfferRecovery();
    EXPECT_EQ(dialogs.shown, Lines{question});
    EXPECT_EQ(Records(), (Lines{"a", "b"}));
    EXPECT_TRUE(globals.unsaved);
    EXPECT_TRUE(Enabled("cmdPlay"));
    EXPECT_TRUE(HasRecovery()) << "until it is saved";
    dialogs.answers = {Answer::kNo};
    window.OfferRecovery();
    EXPECT_FALSE(HasRecovery());
}

TEST_F(RecordTest, SaysWhenTheBrowserIsClosed) {
    OpenBrowser();
    Press("cmdRec");
    browser->Die();
    browsers.visible.clear();
    Pass(20);
    EXPECT_EQ(Find("txtStatus").Text(),
              "ブラウザーが閉じられました。「停止」を押すと記録を終わります。");
    Press("cmdStop");
    Pass(1100);
    EXPECT_EQ(Find("txtUrl").Text(), "");
}

TEST_F(RecordTest, OpensABrowserForRecording) {
    browsers.opens = browser;
    form().Press("Ctrl+B");
    EXPECT_EQ(browsers.opened, Lines{""});
    browsers.refusal = "見つかりません。";
    dialogs.answers = {Answer::kOk};
    form().Press("Ctrl+B");
    EXPECT_EQ(dialogs.shown, Lines{"ブラウザを起動できません|見つかりません。"});
}

class TagPaneTest : public RecordTest {
protected:
    TagPaneTest() {
        form().Find("optDisp", 1).SetChecked(true);
        OpenBrowser();
        Pass(1100);
    }
    ListBox& tags() { return form().List("lstDetail"); }
    Lines Tags() {
        Lines lines;
        for (int i = 0; i < tags().Count(); ++i) lines.emplace_back(tags().Line(i));
        return lines;
    }
};

TEST_F(TagPaneTest, ListsThePageThatIsAttached) {
    EXPECT_EQ(Tags(), (Lines{"1\tINPUT\ttext\tq\t", "2\tINPUT\tpassword\tpw\t",
                             "3\tINPUT\tsubmit\tgo\t", "4\tA\thref\t\t"}));
    web.pages["next"] = "<img id=\"a\tb\" alt=x>";
    browser->Show("next");
    Pass(1700);
    EXPECT_EQ(Tags(), Lines{"1\tIMG\t\ta b\tx"});
    browsers.visible.clear();
    Pass(1700);
    EXPECT_EQ(Tags(), Lines{});
}

TEST_F(TagPaneTest, ShowsAnElementAndMakesItsRecord) {
    tags().SetListIndex(3);
    EXPECT_EQ(web.calls.back(), "outline #");
    tags().onDblClick();
    tags().SetListIndex(0);
    tags().onDblClick();
    EXPECT_EQ(Records(),
              (Lines{kUrl[0], "click\t,id=,type=href,indt=次へ", "input\t,id=q,type=text,indt="}));
    list().SetListIndex(0);
    tags().SetListIndex(2);
    tags().onDblClick();
    EXPECT_EQ(window.Record(1), kRecorded[1]);
    EXPECT_EQ(list().ListIndex(), 1);
    EXPECT_TRUE(globals.unsaved);
}

TEST_F(TagPaneTest, ShowsTheElementOfTheChosenRecord) {
    list().SetLines({"url\t,id=,indt=shop", "click\t,id=go,type=submit,indt=",
                     "click\t,id=,type=href,indt=次へ", "input\t,id=none,type=text,indt="});
    const auto choose = [&](int row) {
        web.calls.clear();
        list().SetListIndex(row);
        Pass(400);
        return web.calls;
    };
    EXPECT_EQ(choose(0), Lines{});
    EXPECT_EQ(choose(1), Lines{"outline go"});
    EXPECT_EQ(choose(2).back(), "outline #");
    EXPECT_EQ(choose(3), Lines{});
    form().Find("optDisp", 0).SetChecked(true);
    EXPECT_EQ(choose(1), Lines{});
}

}  // namespace
}  // namespace tamrin::test
