#include "app/record_commands.h"

#include "app/main_window_rig.h"
#include "scenario/record.h"

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
    // "open" is a browser in which the user works; there, "type ID TEXT" fills a field and "go"
    // clicks the button.
    void Act(const std::string& act) override {
        if (act == "open") {
            browsers.visible = {browser};
            browsers.focused = browser;
            Pass(1100);
        } else if (act == "go") {
            user.Click("go");
        } else if (act.starts_with("type ")) {
            const auto blank = act.find(' ', 5);
            user.Type(act.substr(5, blank - 5), act.substr(blank + 1));
            user.Focus("");
        } else {
            MainWindowTest::Act(act);
        }
        Pass(200);
    }
    // The activity; which of Rec, Play and Stop are enabled; the records by action and id; "*" when
    // they are unsaved; "!" when the recovery file keeps them.
    std::string State() override {
        std::string state = globals.activity + ":";
        for (const char* name : {"Rec", "Play", "Stop"}) {
            EXPECT_EQ(Enabled(std::string("cmd") + name), Enabled(std::string("mnu") + name));
            if (Enabled(std::string("cmd") + name)) state += name[0];
        }
        for (const std::string& record : Records()) {
            state += " " + GetRecordItem(record, "Act") + GetRecordItem(record, "id");
        }
        return state + (globals.unsaved ? "*" : "") +
               (files.contents.contains("C:\\tamrin\\Recovery.csv") ? "!" : "");
    }

    std::shared_ptr<ScriptedBrowser> browser = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, browser};
    const Lines kRecorded{"url\t,id=,size_bar=0.0.1024.768.11110,indt=shop",
                          "click\t,id=go,type=submit,indt="};
};

TEST_F(RecordTest, RecordsFromTheButtonToTheStop) {
    Run({
        {"open; cmdRec", "", "", "rec:S*"},
        {"type q x; go; F5", "", "", "rec:S url inputq clickgo*!"},
        {"cmdStop; go", "", "", ":RP url inputq clickgo*!"},
    });
    const Lines records{kRecorded[0], "input\t,id=q,type=text,indt=x", kRecorded[1]};
    EXPECT_EQ(Records(), records);
    EXPECT_EQ(files.contents["C:\\tamrin\\Recovery.csv"],
              records[0] + "\r\n" + records[1] + "\r\n" + records[2] + "\r\n");
    EXPECT_EQ(list().ListIndex(), 2);
    EXPECT_EQ(globals.settings.disp, 0);
    EXPECT_EQ(browser->brought_to_front, 1);
    Run({
        {"cmdRec", "c", "既存データあり|現在の記録データは破棄して", ":RP url inputq clickgo*!"},
        {"cmdRec", "n", "「いいえ」→追記記録", "rec:S url inputq clickgo*!"},
        {"type q y; mnuStop", "", "", ":RP url inputq clickgo inputq*!"},
        {"mnuRec", "y", "「はい」→新規記録", "rec:S*"},
        {"go; cmdStop", "", "", ":RP url clickgo*!"},
        {"mnuSave", ">C:\\new.csv", "", ":RP url clickgo"},
        {"cmdRec", "", "", "rec:S url clickgo*!"},
        {"type q z; cmdStop", "", "", ":RP url clickgo inputq*!"},
        {"mnuNew", "n", "", ":R"},
    });
}

TEST_F(RecordTest, WaitsForABrowserAndExplainsOnceHowToOpenOne) {
    browsers.opens = browser;
    Run({
        {"cmdRec", "oo", "対象のWebページを表示（アクティブに）して下さい。/記録の準備|", ":R"},
        {"cmdRec", "o", "Tamrin|対象の", ":R"},
        {"Ctrl+B", "", "", ":R"},
    });
    EXPECT_EQ(browsers.opened, Lines{""});
    browsers.refusal = "見つかりません。";
    Run({{"Ctrl+B", "o", "ブラウザを起動できません|見つかりません。", ":R"}});
    browsers.visible = {browser};
    After(300, [&] { browsers.focused = browser; });
    Run({{"cmdRec", "", "", "rec:S*"}});
    EXPECT_EQ(browser->brought_to_front, 1);
    browser->Die();
    browsers.visible.clear();
    Pass(20);
    EXPECT_EQ(Find("txtStatus").Text(),
              "ブラウザーが閉じられました。「停止」を押すと記録を終わります。");
    Run({{"cmdStop", "", "", ":R*"}});
    Pass(1100);
    EXPECT_EQ(Find("txtUrl").Text(), "");
}

TEST_F(RecordTest, StopsOrClosesWhenTheEventsThatWaitAreRecorded) {
    for (const bool close : {false, true}) {
        Act("open");
        Act("cmdRec");
        user.Click("go");
        if (close) dialogs.answers = {kNo};
        After(50, [&] {
            user.Type("q", "late");
            user.Focus("");
            if (close) {
                EXPECT_FALSE(window.Close());
            } else {
                form().Click("cmdStop");
            }
            EXPECT_EQ(globals.activity, "rec");
        });
        Pass(300);
        EXPECT_EQ(State(), close ? ":RP url clickgo inputq" : ":RP url clickgo inputq*!");
        EXPECT_EQ(window.closed(), close);
        if (!close) Run({{"mnuNew", "n", "", ":R"}});
    }
}

TEST_F(RecordTest, TellsOnceAfterTheWorkThatAScenarioHoldsAPassword) {
    Run({
        {"open; cmdRec; type pw secret", "", "", "rec:S url inputpw*!"},
        {"cmdStop", "o", "パスワードの記録|", ":RP url inputpw*!"},
        {"cmdRec; type pw other; cmdStop", "y", "", ":RP url inputpw*!"},
    });
}

TEST_F(RecordTest, OffersWhatACrashHasLeft) {
    window.OfferRecovery();
    for (const Answer answer : {kYes, kNo}) {
        files.contents["C:\\tamrin\\Recovery.csv"] = "a\r\nb\r\n";
        dialogs.answers = {answer};
        window.OfferRecovery();
        EXPECT_EQ(State(), answer == kYes ? ":RP a b*!" : ":RP a b*");
    }
    EXPECT_EQ(dialogs.shown, Lines(2,
                                   "記録の復元|前回、保存されなかった記録が 2 行残っています。"
                                   "復元しますか？\r\n　「はい」→復元\r\n　「いいえ」→破棄"));
}

class TagPaneTest : public RecordTest {
protected:
    TagPaneTest() {
        form().Find("optDisp", 1).SetChecked(true);
        Act("open");
        Pass(1100);
    }
    ListBox& tags() { return form().List("lstDetail"); }
};

TEST_F(TagPaneTest, ListsThePageThatIsAttached) {
    EXPECT_EQ(LinesOf(tags()), (Lines{"1\tINPUT\ttext\tq\t", "2\tINPUT\tpassword\tpw\t",
                                      "3\tINPUT\tsubmit\tgo\t", "4\tA\thref\t\t"}));
    web.pages["next"] = "<img id=\"a\tb\" alt=x>";
    browser->Show("next");
    Pass(1700);
    EXPECT_EQ(LinesOf(tags()), Lines{"1\tIMG\t\ta b\tx"});
    browsers.visible.clear();
    Pass(1700);
    EXPECT_EQ(LinesOf(tags()), Lines{});
}

TEST_F(TagPaneTest, ShowsAnElementAndMakesItsRecord) {
    const auto add = [&](int tag) {
        tags().SetListIndex(tag);
        tags().onDblClick();
        return State();
    };
    EXPECT_EQ(add(3), ":RP url click*");
    EXPECT_EQ(web.calls.back(), "outline #");
    EXPECT_EQ(add(0), ":RP url click inputq*");
    EXPECT_EQ(list().ListIndex(), 2);
    list().SetListIndex(0);
    EXPECT_EQ(add(2), ":RP url clickgo click inputq*");
    globals.activity = "play";
    EXPECT_EQ(add(2), "play:RP url clickgo click inputq*");
    globals.activity = "";
    globals.unsaved = false;
    Act("mnuRec");
    list().SetListIndex(0);
    EXPECT_EQ(add(0), "rec:S url clickgo click inputq inputq*!");
}

TEST_F(TagPaneTest, ShowsTheElementOfTheChosenRecord) {
    list().SetLines({"url\t,id=,indt=shop", "click\t,id=go,type=submit,indt=",
                     "click\t,id=,type=href,indt=次へ", "input\t,id=none,type=text,indt="});
    const auto choose = [&](int row) {
        web.calls.clear();
        list().SetListIndex(row);
        Pass(400);
        return web.calls.empty() ? "" : web.calls.back();
    };
    EXPECT_EQ(choose(0) + choose(3), "");
    EXPECT_EQ(choose(1), "outline go");
    EXPECT_EQ(choose(2), "outline #");
    form().Find("optDisp", 0).SetChecked(true);
    EXPECT_EQ(choose(1), "");
}

}  // namespace
}  // namespace tamrin::test
