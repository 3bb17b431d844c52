#include <sstream>

#include "app/console_recording.h"
#include "app/main_window_rig.h"
#include "app/record_fields.h"
#include "scenario/record.h"

namespace tamrin::test {
namespace {

class RecordListTest : public MainWindowTest {
protected:
    RecordListTest() { window.Form_Load(""); }

    // "show ab" opens a list of the lines a and b, "select 01" selects two of them, the last as the
    // current one, and "copy T" puts a text into the clipboard.
    void Act(const std::string& act) override {
        if (act.starts_with("show ")) {
            globals.unsaved = false;
            form().Click("mnuNew");
            Lines lines;
            for (const char c : act.substr(5)) lines.emplace_back(1, c);
            list().SetLines(lines);
        } else if (act.starts_with("select ")) {
            list().SetListIndex(act.back() - '0');
            for (const char c : act.substr(7)) list().Select(c - '0', true);
        } else if (act.starts_with("copy ")) {
            windows.SetClipboardText(act.substr(5));
        } else {
            MainWindowTest::Act(act);
        }
    }
    // The lines, those selected in brackets, and "*" when they are unsaved.
    std::string State() override {
        Lines lines;
        for (int i = 0; i < list().Count(); ++i) {
            const std::string line(list().Line(i));
            lines.push_back(list().Selected(i) ? "[" + line + "]" : line);
        }
        return Joined(lines) + (globals.unsaved ? "*" : "");
    }
};

TEST_F(RecordListTest, CommandsEditTheListAndAreUndone) {
    const std::string text = ": txtText=";
    Run({
        {"mnuAddUpper", "", "", "[]*"},
        {"show abcde; Del; Ctrl+C; F2; Ctrl+E; mnuAddUnder", "", "", "[]/a/b/c/d/e*"},
        {"Ctrl+Z", "", "", "[a]/b/c/d/e"},
        {"show abcd; copy x; Ctrl+V; select 02; Del", "o", "", "b/d*"},
        {"mnuNew; Ctrl+Z; Ctrl+Y", "n", "未保存のデータがあります。", ""},
        {"show abcde; select 13; mnuDelLine", "", "", "[a]/c/e*"},
        {"Ctrl+Z", "", "", "a/[b]/c/d/e"},
        {"Ctrl+Y", "", "", "a/[c]/e*"},
        {"mnuAddUpper; mnuAddUnder", "", "", "a//[]/c/e*"},
        {"copy x\ny\r\nz; Ctrl+V; Ctrl+C", "oo",
         "Tamrin|貼り付け完了！/Tamrin|クリップボードにコピーしました。", "a//[x]/[y]/[z]*"},
        {"select 4; mnuPaste", "o", "", "a//x/y/[x]/[y]/[z]*"},
        {"copy ; Ctrl+V", "o", "Tamrin|貼り付けデータ無し！", "a//x/y/[x]/[y]/[z]*"},
        // What is undone up to the saved state is saved, unless other edits have replaced it.
        {"show ab; select 0; Del; Ctrl+S; Ctrl+Z; Ctrl+Y", ">C:\\work\\r.csv", "", "[b]"},
        {"Del; Ctrl+Z", "", "", "[b]"},
        {"Ctrl+Z; mnuAddUnder; Ctrl+Z; Ctrl+Y", "", "", "a/[]/b*"},
        {"show abc; select 2; mnuEditLine" + text + "c, cmdOk", "", "", "a/b/[c]"},
        {"mnuEditLine" + text + "x\r\ny, cmdOk", "", "", "a/b/[x]/y*"},
        {"Ctrl+Z", "", "", "a/b/[c]"},
        {"Ctrl+Shift+Z; mnuEditAll" + text + "x\r\n, cmdOk", "", "", "x/*"},
        {"select 0; Ctrl+E" + text + ", cmdOk", "", "", "[]/*"},
        {"mnuEditAll" + text + ", cmdOk", "", "", "*"},
        {"show a; mnuEditAll: cmdOk; mnuEditAll" + text + "x, cmdCancel", "", "", "a"},
        {"select 0; mnuEdit: txtId=x, cmdCancel; Ctrl+E" + text + "x, cmdCancel", "", "", "[a]"},
        {"mnuAddUnder", "", "", "a/[]*"},
    });
    list().SetLines({"recorded", "meanwhile"});
    Run({{"Ctrl+Z", "", "", "recorded/meanwhile*"}});
    Act("show x" + std::string(1000, 'a') + "y");
    list().SelectRange(1, 1000);
    Run({{"Del", "", "", "[x]/y*"}});
    Act("Ctrl+Z");
    EXPECT_EQ(Records().size(), 1002U);
    EXPECT_EQ(Records()[1000] + Records()[1001], "ay");
}

TEST_F(RecordListTest, ADialogChangesNothingWhenTheListHasChanged) {
    for (const char* menu : {"mnuEdit", "mnuEditLine", "mnuEditAll"}) {
        Act("show a");
        list().SetListIndex(0);
        windows.onModal = [&](HeadlessForm& dialog) {
            list().SetLines({"b"});
            dialog.Find(menu == std::string("mnuEdit") ? "txtId" : "txtText").SetText("x");
            dialog.Click("cmdOk");
        };
        dialogs.answers = {kOk};
        form().Click(menu);
        EXPECT_EQ(State() + dialogs.shown.back(),
                  "bTamrin|編集中に記録が変更されました。編集した内容は反映されません。");
    }
}

TEST_F(RecordListTest, TheDialogShowsAndStoresTheFieldsOfARecord) {
    const std::string record = "url\t,id=a,size_bar=1.2,type=t,indt=1\0012,x=y,userwait=3";
    list().SetLines({record});
    list().SetListIndex(0);
    Run({{"mnuEditRecord: cmdOk", "", "", "[" + record + "]"}});
    windows.onModal = [&](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Combo("cmbAct").Items()[2], "sendkeys-if-busy 'ビジー時キー入力");
        dialog.Find("txtSizeBar").SetText("");
        std::string enabled;
        for (const char* action : {"//", "url", "click x"}) {
            dialog.Find("cmbAct").SetText(action);
            enabled += dialog.Find("txtSizeBar").Enabled() ? "size " : "- ";
            enabled += dialog.Find("txtUserWait").Enabled() ? "wait " : "- ";
        }
        EXPECT_EQ(enabled, "- - size wait - wait ");
        dialog.Click("cmdCancel");
    };
    form().Click("mnuEditRecord");
    Run({{"F2: cmbAct=click  'x, txtId=b, cmbType=u, txtInDt=3,4, txtSizeBar=, txtUserWait=7, cmdOk",
          "", "", "[click\t,id=b,type=u,indt=3\0014,x=y,userwait=7]*"},
         {"Ctrl+E: txtText=// a memo, cmdOk; F2: cmdOk", "", "", "[// a memo]*"}});
}

TEST(RecordFields, AreReadAndWrittenInTheirPlaces) {
    EXPECT_EQ(ReadRecordFields("input\t,id=a,type=text,indt=1\0012\002%%comma%%,userwait=1&#44;5"),
              (Record{"input", "a", "text", "", "1,2\r\n%%comma%%", "1,5"}));
    EXPECT_EQ(OfferedTypes(), (Lines{"password", "text", "textarea", "input", "file", "checkbox",
                                     "radio", "select-one", "button", "submit", "image", "href"}));
    // A line, a record with the fields that take the place of its own, and the line then.
    const char* const rows[][3] = {
        {"click\t,ID=b,indt=,x", "click\t,id=b", "click\t,ID=b,indt=,x"},
        {"", "input\t,id=q,indt=a\001b\002c", "input\t,id=q,type=,indt=a\001b\002c,userwait="},
        {"", "url\t,indt=h/?a=b", "url\t,id=,size_bar=,indt=h/?a=b,userwait="},
        {"", "//\t,indt=x,userwait=9", "//\t,id=,type=,indt=x"},
        {"sendkeys\t{TAB}", "sendkeys\t{ENTER}", "sendkeys\t,id=,type=,indt={ENTER}"},
        {"click\t,new=1,ID=a,other,userwait=2,type=button,indt=,Id=z",
         "click\t,id=b,type=button,userwait=3&#44;5",
         "click\t,new=1,id=b,other,type=button,indt=,userwait=3&#44;5"},
        {"click", "click\t,indt=x\002y", "click\t,id=,type=,indt=x\002y,userwait="},
        {"click,id=a", "click\t,id=b", "click\t,id=b,type=,indt=,userwait="},
        {"click\thead,id=a", "click\t,id=b", "click\thead,id=b,type=,indt=,userwait="},
    };
    for (const auto& [line, fields, result] : rows) {
        EXPECT_EQ(RewriteRecord(line, ReadRecordFields(fields)), result) << line;
    }
    EXPECT_EQ(RewriteRecord("", {"//", "a\tb", "", "", "x\ny\rz", ""}),
              "//\t,id=a b,type=,indt=x\002y\002z");
}

class RecordTest : public MainWindowTest {
protected:
    RecordTest() {
        web.pages["shop"] =
            "<input id=q type=text><input id=pw type=password value=p>"
            "<input id=go type=submit><a href=#>次へ</a>";
        browser->Show("shop");
        window.Form_Load("");
    }
    // "browser" is one in which the user works, "tag N" double-clicks a tag, "line N" clicks a
    // record. "start" is what the program does first where a record has been left.
    void Act(const std::string& act) override {
        const Lines words = Split(act, " ");
        if (act == "browser") {
            browsers.visible = {browsers.focused = browser};
            clock.Pass(1100);
        } else if (act == "start") {
            files.contents[kLeft] = "click\t,id=q\r\n";
            window.OfferRecovery();
        } else if (words[0] == "tag") {
            tags().SetListIndex(std::stoi(words[1]));
            tags().onDblClick();
        } else if (words[0] == "line") {
            list().SetListIndex(std::stoi(words[1]));
        } else if (!user.Do(act)) {
            MainWindowTest::Act(act);
        }
        clock.Pass(200);
    }
    // The activity; which of Rec, Play and Stop are enabled; the records by action and id; "*" when
    // they are unsaved; "!" when the recovery file keeps them.
    std::string State() override {
        std::string state = globals.activity + ":";
        for (const std::string name : {"Rec", "Play", "Stop"}) {
            EXPECT_EQ(Enabled("cmd" + name), Enabled("mnu" + name));
            if (Enabled("cmd" + name)) state += name[0];
        }
        for (const std::string& record : Records()) {
            state += " " + GetRecordItem(record, "Act") + GetRecordItem(record, "id");
        }
        return state + (globals.unsaved ? "*" : "") + (files.contents.contains(kLeft) ? "!" : "");
    }
    ListBox& tags() { return form().List("lstDetail"); }

    std::shared_ptr<ScriptedBrowser> browser = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, browser};
    const std::string kLeft = "C:\\tamrin\\Recovery.csv";
};

TEST_F(RecordTest, RecordsFromTheButtonToTheStop) {
    Run({
        {"browser; cmdRec", "", "", "rec:S*"},
        {"type q x; click go; F5", "", "", "rec:S url inputq clickgo*!"},
        {"cmdStop; click go", "", "", ":RP url inputq clickgo*!"},
    });
    EXPECT_EQ(files.contents[kLeft],
              "url\t,id=,size_bar=0.0.1024.768.11110,indt=shop\r\n"
              "input\t,id=q,type=text,indt=x\r\nclick\t,id=go,type=submit,indt=\r\n");
    EXPECT_EQ((std::vector{list().ListIndex(), globals.settings.disp, browser->brought_to_front}),
              (std::vector{2, 0, 1}));
    Run({
        {"cmdRec", "c", "既存データあり|現在の記録データは破棄して", ":RP url inputq clickgo*!"},
        {"cmdRec; type q y; leave; mnuStop", "n", "", ":RP url inputq clickgo inputq*!"},
        {"mnuRec; click go; cmdStop", "y", "「はい」→新規記録", ":RP url clickgo*!"},
        {"mnuSave", ">C:\\new.csv", "", ":RP url clickgo"},
        {"cmdRec; type pw x; leave; cmdStop", "o", "パスワードの記録|",
         ":RP url clickgo inputpw*!"},
        {"cmdRec; type pw other; leave; cmdStop", "y", "", ":RP url inputpw*!"},
        {"mnuNew", "n", "", ":R"},
        // What a crash has left.
        {"start", "n", "が 1 行残っています。復元しますか？", ":R"},
        {"start", "y", "", ":RP clickq*!"},
    });
}

TEST_F(RecordTest, WaitsForABrowserAndOffersOneThatItsWindowDoesNotCover) {
    const char* const asked = "対象のWebページを表示（アクティブに）して下さい。";
    Run({
        {"cmdRec", "c", asked, ":R"},
        {"cmdRec", "oo", "記録用ブラウザーを開く\r\n　「キャンセル」→中止/ブラウザーを起動", ":R"},
    });
    browsers.opens = browser;
    Run({{"cmdRec", "o", asked, ":R"}});
    EXPECT_EQ(web.calls.back(), "place 0,0,1024,724");
    browsers.visible = {browser};
    Run({{"cmdRec", "o", asked, ":R"}});
    EXPECT_TRUE(dialogs.shown[0].ends_with(asked));
    clock.After(300, [&] { browsers.focused = browser; });
    Run({{"cmdRec", "", "", "rec:S*"}});
    browser->Die();
    browsers.visible.clear();
    clock.Pass(1100);
    EXPECT_TRUE(Find("txtStatus").Text().starts_with("ブラウザーが閉じられました。"));
    Run({{"cmdStop", "", "", ":R*"}});
}

TEST_F(RecordTest, ShowsTheBrowserThatHasTheFocusWhileNothingRuns) {
    const auto other = std::make_shared<ScriptedBrowser>(web);
    other->Show("page");
    browsers.visible = {browser, other};
    Control& url = Find("txtUrl");
    auto& handle = dynamic_cast<HeadlessControl&>(Find("txthWnd"));
    const auto shown = [&](const std::shared_ptr<Browser>& focused) {
        browsers.focused = focused;
        clock.Pass(1100);
        return url.Text() + " " + handle.Text();
    };
    handle.onDblClick();
    EXPECT_EQ(shown(nullptr) + handle.tip(), " ウィンドウハンドル（16進）");
    EXPECT_EQ(shown(browser), "shop AF");
    handle.onDblClick();
    EXPECT_EQ(shown(browser) + handle.tip(), "shop 175ウィンドウハンドル（十進）");
    Act("mnuToolPanel");
    EXPECT_EQ(Find("txtPlace").Text(), "0, 0  1024×768");
    form().Click("chkMenuBar");
    EXPECT_EQ(web.calls, Lines{"bars 1011"});
    EXPECT_TRUE(Find("chkMenuBar").Checked()) << "this browser has kept its bar";
    EXPECT_EQ(shown(other), "page 175");
    EXPECT_EQ(shown(nullptr), "page 175") << "the user has turned to another program";
    url.onClick();
    handle.onClick();
    EXPECT_EQ(other->brought_to_front, 2);
    globals.activity = "play";
    EXPECT_EQ(shown(browser), "page 175");
    globals.activity.clear();
    other->Show("shop");
    EXPECT_EQ(shown(other), "shop 175");
    browsers.visible.clear();
    EXPECT_EQ(shown(nullptr), "shop 175") << "minimised";
    other->Die();
    EXPECT_EQ(shown(nullptr), " ");
    EXPECT_TRUE(Find("txtPlace").Text().empty() && !Find("chkMenuBar").Checked());
    url.SetText("order.csv");
    EXPECT_EQ(shown(nullptr), " ");
}

TEST_F(RecordTest, StopsOrClosesWhenTheEventsThatWaitAreRecorded) {
    for (const bool close : {false, true}) {
        Run({{"browser; cmdRec", "", "", "rec:S*"}});
        user.Do("click go");
        if (close) dialogs.answers = {kNo};
        clock.After(50, [&] {
            user.Do("type q late");
            user.Do("leave");
            close ? void(window.Close()) : form().Click("cmdStop");
            EXPECT_EQ(globals.activity, "rec");
        });
        clock.Pass(300);
        EXPECT_EQ(State(), close ? ":RP url clickgo inputq" : ":RP url clickgo inputq*!");
        EXPECT_EQ(window.closed(), close);
        if (!close) Run({{"mnuNew", "n", "", ":R"}});
    }
}

TEST_F(RecordTest, SavesToAFileWhatIsRecordedUntilTheBrowserIsClosed) {
    const std::string path = "C:\\work\\new.csv";
    const std::string saved =
        "url\t,id=,size_bar=0.0.1024.768.11110,indt=page\r\n"
        "input\t,id=a,type=text,indt=x\r\n";
    browsers.opens = browser;
    std::ostringstream output;
    const auto record = [&](bool interrupted) {
        const auto stop = [=] { return interrupted; };
        return RecordToFile(window, platform, "new.csv", "page", stop, output);
    };
    dialogs.answers = {kOk};
    EXPECT_EQ(record(true), kNothing);
    EXPECT_EQ(dialogs.shown, Lines{"Tamrin|記録はありません。"});
    clock.After(500, [&] { user.Do("type a x"); });
    clock.After(600, [&] { user.Do("leave"); });
    clock.After(900, [&] {
        EXPECT_EQ(files.contents[path + ".recovery"], saved);
        browser->Die();
    });
    EXPECT_EQ(record(false), kPlayed);
    EXPECT_FALSE(files.contents.contains(path + ".recovery"));
    EXPECT_EQ(files.contents[path], saved);
}

TEST_F(RecordTest, ThePaneListsTheTagsOfThePageAndMakesRecordsOfThem) {
    form().Find("optDisp", 2).SetChecked(true);
    browser->page()->Find("q")->value = std::string(300, 'x');
    Act("browser");
    EXPECT_EQ(Joined(LinesOf(tags())),
              "1\tINPUT\ttext\tq\t" + std::string(200, 'x') +
                  "/2\tINPUT\tpassword\tpw\t●●●●●●●●/3\tINPUT\tsubmit\tgo\t/4\tA\thref\t\t");
    Run({{"tag 3; tag 0", "", "", ":RP url click inputq*"},
         {"line 0; tag 2", "", "", ":RP url clickgo click inputq*"}});
    globals.activity = "play";
    Run({{"tag 2", "", "", "play:RP url clickgo click inputq*"}});
    globals.activity = "";
    // The element of the chosen record is shown.
    const auto outlined = [&](const std::string& act) {
        web.calls.clear();
        Act(act);
        clock.Pass(400);
        return Joined(web.calls);
    };
    EXPECT_EQ(outlined("line 0"), "");
    EXPECT_EQ(outlined("line 1"), "outline go");
    EXPECT_EQ(outlined("line 2"), "outline #");
    globals.unsaved = false;
    Run({{"mnuRec; line 0; tag 0; cmdStop", "", "", ":RP url clickgo click inputq inputq*!"}});
    EXPECT_EQ(outlined("line 1"), "") << "a recording hides the pane";
    form().Find("optDisp", 2).SetChecked(true);
    browser->Die();
    browsers.focused = nullptr;
    clock.Pass(500);
    EXPECT_EQ(LinesOf(tags()), Lines{});
}

}  // namespace
}  // namespace tamrin::test
