#include <random>

#include "app/main_window_rig.h"

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
    const std::string as_text = ": txtText=";
    Run({
        {"mnuAddUpper", "", "", "[]*"},
        {"Ctrl+Z; Ctrl+Z", "", "", ""},
        {"show abcde; Del; Ctrl+C; F2; Ctrl+E", "", "", "a/b/c/d/e"},
        {"mnuAddUnder", "", "", "[]/a/b/c/d/e*"},
        {"Ctrl+Z", "", "", "[a]/b/c/d/e"},
        {"select 13; mnuDelLine", "", "", "[a]/c/e*"},
        {"Ctrl+Z", "", "", "a/[b]/c/d/e"},
        {"Ctrl+Y", "", "", "a/[c]/e*"},
        {"mnuAddUpper", "", "", "a/[]/c/e*"},
        {"mnuAddUnder", "", "", "a//[]/c/e*"},
        {"copy x\ny\r\nz; Ctrl+V", "o", "Tamrin|貼り付け完了！", "a//[x]/[y]/[z]*"},
        {"Ctrl+C", "o", "Tamrin|クリップボードにコピーしました。", "a//[x]/[y]/[z]*"},
        {"select 4; mnuPaste", "o", "", "a//x/y/[x]/[y]/[z]*"},
        {"copy ; Ctrl+V", "o", "Tamrin|貼り付けデータ無し！", "a//x/y/[x]/[y]/[z]*"},
        {"show abc; select 2; mnuEditLine" + as_text + "c, cmdOk", "", "", "a/b/[c]"},
        {"mnuEditLine" + as_text + "x\r\ny, cmdOk", "", "", "a/b/[x]/y*"},
        {"Ctrl+Z", "", "", "a/b/[c]"},
        {"Ctrl+Shift+Z", "", "", "a/b/[x]/y*"},
        {"mnuEditAll" + as_text + "x\r\n, cmdOk", "", "", "x/*"},
        {"select 0; Ctrl+E" + as_text + ", cmdOk", "", "", "[]/*"},
        {"mnuEditAll" + as_text + ", cmdOk", "", "", "*"},
        {"show a; mnuEditAll" + as_text + ", cmdOk", "", "", "*"},
        {"show a; mnuEditAll: cmdOk", "", "", "a"},
        {"mnuEditAll" + as_text + "x, cmdCancel", "", "", "a"},
        {"select 0; mnuEditLine" + as_text + "x, cmdCancel", "", "", "[a]"},
        {"mnuEdit: txtId=x, cmdCancel", "", "", "[a]"},
    });
    Run({{"show a; mnuAddUnder", "", "", "[]/a*"}});
    list().SetLines({"recorded", "meanwhile"});
    Run({{"Ctrl+Z", "", "", "recorded/meanwhile*"}});
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
        EXPECT_EQ(State(), "b") << menu;
    }
    EXPECT_EQ(dialogs.shown.back(),
              "Tamrin|編集中に記録が変更されました。編集した内容は反映されません。");
}

TEST_F(RecordListTest, EditsAHundredThousandLinesAtOnce) {
    const Lines many(100000, "url\t,id=,indt=x");
    list().SetLines(many);
    Act("Ctrl+A");
    list().Select(50000, false);
    Act("Del");
    EXPECT_EQ(Records().size(), 1U);
    Act("Ctrl+Z");
    EXPECT_EQ(Records(), many);
}

TEST(EditHistory, KeepsTheLatestEdits) {
    EditHistory history;
    for (int i = 0; i < 1000; ++i) history.Add({i, {}, {""}});
    int undone = 0;
    while (history.Undo() != nullptr) ++undone;
    EXPECT_EQ(undone, 500);
    EXPECT_FALSE(history.IsSaved()) << "the saved state is forgotten";
}

TEST_F(RecordListTest, TheDialogShowsAndStoresTheFieldsOfARecord) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"cmbAct", "url              'Webページアドレス", "click            'x"},
        {"txtId", "a", "b"},
        {"cmbType", "t", "u"},
        {"txtInDt", "1,2", "3,4"},
        {"txtSizeBar", "1.2", ""},
        {"txtUserWait", "3", "7"},
    };
    list().SetLines({"//",
                     "url\t,id=a,size_bar=1.2,type=t,indt=1\x01"
                     "2,x=y,userwait=3"});
    list().SetListIndex(1);
    windows.onModal = [&](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Combo("cmbAct").Items().size(), 11U);
        EXPECT_EQ(dialog.Combo("cmbType").Items().back(), "href");
        for (const auto& [control, shown, typed] : rows) {
            EXPECT_EQ(dialog.Find(control).Text(), shown);
            dialog.Find(control).SetText(typed);
        }
        std::string enabled;
        for (const char* action : {"//", "url", "click x"}) {
            dialog.Find("cmbAct").SetText(action);
            enabled += dialog.Find("txtSizeBar").Enabled() ? " size" : " -";
            enabled += dialog.Find("txtUserWait").Enabled() ? " wait" : " -";
        }
        EXPECT_EQ(enabled, " - - size wait - wait");
        dialog.Click("cmdOk");
    };
    form().Click("mnuEditRecord");
    EXPECT_EQ(State(),
              "///[click\t,id=b,type=u,indt=3\x01"
              "4,x=y,userwait=7]*");
}

// Undo steps back among the states that the list had, and what is not unsaved stands in the file.
TEST_F(RecordListTest, RandomEditsAreUndoneAndSaved) {
    const std::string path = "C:\\work\\r.csv";
    const char* const acts[] = {"mnuAddUpper", "mnuAddUnder", "Del",    "Ctrl+V",
                                "Ctrl+Z",      "Ctrl+Y",      "Ctrl+S", "open"};
    std::mt19937 random;
    const auto below = [&](int end) {
        return static_cast<int>(random() % static_cast<unsigned>(end));
    };
    for (unsigned seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        globals.settings.cipher = seed % 4 == 0;
        globals.unsaved = false;
        files.contents[path] = "";
        form().onDropFiles({path});
        std::vector<Lines> states{{}};
        std::size_t now = 0;
        Lines saved;
        for (int step = 0; step < 60; ++step) {
            list().SetListIndex(below(list().Count() + 1) - 1);
            const std::string act = acts[below(8)];
            if (act == "Ctrl+V") {
                const std::string line = std::to_string(step) + "、表";
                windows.SetClipboardText(below(2) > 0 ? line : line + "\r\n" + line);
                dialogs.answers = {kOk};
            }
            if (act == "open") {
                if (globals.unsaved && list().Count() > 0) dialogs.answers = {kNo};
                form().onDropFiles({path});
                states = {saved};
                now = 0;
            } else {
                Act(act);
            }
            if (act == "Ctrl+Z") {
                now -= now > 0 ? 1 : 0;
            } else if (act == "Ctrl+Y") {
                now += now + 1 < states.size() ? 1 : 0;
            } else if (act == "Ctrl+S") {
                saved = states[now];
            } else if (Records() != states[now]) {
                states.resize(++now);
                states.push_back(Records());
            }
            ASSERT_EQ(Records(), states[now]) << act;
            ASSERT_TRUE(globals.unsaved || Records() == saved) << act;
            ASSERT_EQ(Enabled("cmdPlay"), list().Count() > 0) << act;
        }
        Act("Ctrl+S");
        saved = Records();
        ASSERT_EQ(files.contents[path].starts_with("CIPHER\r\n"), globals.settings.cipher);
        form().onDropFiles({path});
        ASSERT_EQ(Records(), saved);
    }
}

}  // namespace
}  // namespace tamrin::test
