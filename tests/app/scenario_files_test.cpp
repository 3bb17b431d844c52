#include "app/scenario_files.h"

#include "app/main_window_rig.h"
#include "app/paths.h"

namespace tamrin::test {
namespace {

class FilesTest : public MainWindowTest {
protected:
    FilesTest() {
        files.contents = {{"C:\\tamrin\\s\\b.csv", "b1\r\nb2\r\n"},
                          {"C:\\tamrin\\s\\c.tamrin", "c\r\n"},
                          {"C:\\tamrin\\s\\d.csv", "\x82\xA0\x81\r\n"},
                          {"C:\\tamrin\\s\\e.txt", ""},
                          {"C:\\tamrin\\s\\f.csv", std::string("u\0r\0l\0", 6)},
                          {"C:\\tamrin\\t\\g.csv", "g\r\n"},
                          {"C:\\tamrin\\Conf.txt", "save folder path = .\\s\r\n"}};
        window.Form_Load("");
    }
    ListBox& csv() { return form().List("lstCsv"); }

    // "file N" clicks the file list, "drop NAME" drops a file of s, "change NAME TEXT" is another
    // program's work; "type TEXT" makes the text the only, unsaved record.
    void Act(const std::string& act) override {
        const std::string rest = act.substr(act.find(' ') + 1);
        const std::string path = "C:\\tamrin\\s\\" + rest.substr(0, rest.find(' '));
        if (act.starts_with("file ")) return csv().SetListIndex(std::stoi(rest));
        if (act.starts_with("double")) return csv().onDblClick();
        if (act.starts_with("drop ")) return form().onDropFiles({path});
        if (act.starts_with("change ")) {
            files.contents[path] = rest.substr(rest.find(' ') + 1);
        } else if (act.starts_with("type ")) {
            list().SetLines({rest});
            globals.unsaved = true;
        } else {
            MainWindowTest::Act(act);
        }
    }
    // The open file, "*" when it is unsaved, its records, and the selected line of the file list.
    std::string State() override {
        const std::string name(FileNameOf(globals.current_file));
        EXPECT_EQ(form().Caption(), "Tamrin 0.10" + (name.empty() ? "" : " < " + name + " >"));
        return name + (globals.unsaved ? "* " : " ") + Joined(Records()) + " " +
               std::to_string(csv().ListIndex());
    }
};

TEST_F(FilesTest, OpensFilesAndSelectsTheOpenOne) {
    EXPECT_EQ(Joined(LinesOf(csv())), "b.csv/d.csv/f.csv/c.tamrin");
    const std::string opens = "開く|シナリオ(*.csv;*.tamrin)|C:\\tamrin\\s\\";
    Run({
        {"double", "", "", "  -1"},
        {"file 0; double; change b.csv x\r\n", "", "", "b.csv b1/b2 0"},
        {"double", "c", "読込の確認|C:\\tamrin\\s\\b.csv\r\nはほかのプログラムで", "b.csv b1/b2 0"},
        {"mnuListOpen", "o", "読み込み直しますか？", "b.csv x 0"},
        {"drop c.tamrin", "", "", "c.tamrin c 3"},
        {"file 2", "o", "読込エラー|C:\\tamrin\\s\\f.csv\r\nはシナリオファイルでは",
         "c.tamrin c 3"},
        {"drop gone", "o", "C:\\tamrin\\s\\gone\r\nのファイルを読み込めません。", "c.tamrin c 3"},
        {"Ctrl+O", ">", opens, "c.tamrin c 3"},
        {"Ctrl+O; mnuListRefresh", ">C:\\tamrin\\t\\g.csv", "", "g.csv g -1"},
        {"file 3", "", "", "c.tamrin c 3"},
        {"Ctrl+N", "", "", "  -1"},
        {"mnuOpenFolder", ">", "フォルダを開く|C:\\tamrin\\s", "  -1"},
        {"mnuOpenFolder; file 0", ">C:\\tamrin\\t", "", "g.csv g 0"},
    });
    EXPECT_EQ(globals.settings.save_folder_path, ".\\t");
}

TEST_F(FilesTest, AsksBeforeUnsavedRecordsAreReplaced) {
    const std::string asks = "Tamrin|未保存のデータがあります。保存しますか？";
    Run({
        {"type x; file 0", "c", asks, "* x -1"},
        {"file 0", "y>", "/|CSVファイル(*.csv;*tamrin)|", "* x -1"},
        {"mnuNew", "y>", "", "* x -1"},
        {"file 0", "y>C:\\tamrin\\s\\x.csv", asks, "b.csv b1/b2 0"},
        {"type y; mnuNew", "c", asks, "b.csv* y 0"},
        {"mnuNew", "y", asks, "  -1"},
        {"drop b.csv", "", "", "b.csv y 0"},
        {"type z; drop c.tamrin", "n", asks, "c.tamrin c 3"},
    });
    EXPECT_EQ(files.contents["C:\\tamrin\\s\\x.csv"], "x\r\n");
}

TEST_F(FilesTest, SavesWithoutLosingAnything) {
    const std::string names = "名前を付けて保存|CSVファイル(*.csv)|C:\\tamrin\\s\\";
    Run({
        {"drop d.csv", "", "", "d.csv あ� 1"},
        {"type x; Ctrl+S", "c", "には読めない文字がありました。上書きすると元の文字は失われます",
         "d.csv* x 1"},
        {"Ctrl+S", "o", "上書きの確認|C:\\tamrin\\s\\d.csv", "d.csv x 1"},
        {"Ctrl+S; change d.csv y\r\n; Ctrl+S", "c",
         "はほかのプログラムで変更されています。上書きしますか？", "d.csv x 1"},
        {"Ctrl+S", "o", "上書きの確認", "d.csv x 1"},
        {"type z; Ctrl+Shift+S", ">", names + "d.csv", "d.csv* z 1"},
        {"Ctrl+Shift+S; mnuSave", ">C:\\tamrin\\t\\z.csv", "", "z.csv z 1"},
    });
    EXPECT_EQ(Find("txtStatus").Text(), "保存完了");
    EXPECT_EQ(Joined(LinesOf(csv())), "g.csv/z.csv");
    files.full_disk = true;
    Run({
        {"mnuSave", "o", "z.csv\r\nに保存できません。元のファイルはそのままです。", "z.csv z 1"},
        {"mnuNew; type x; mnuSave", ">", "|C:\\tamrin\\t\\無題.csv", "* x -1"},
        {"mnuClose", "yo>C:\\gone\\x.csv", "C:\\gone\r\nのフォルダがありません。", "* x -1"},
        {"mnuClose", "c", "", "* x -1"},
    });
    EXPECT_FALSE(window.closed());
    globals.close_after_play = true;  // no settings are written
    Run({{"mnuClose", "y>", "", "* x -1"}});
    EXPECT_TRUE(window.closed()) << "a cancelled dialog closes the window all the same";
}

TEST_F(FilesTest, DeletesTheSelectedFile) {
    const std::string asks =
        "ファイル削除|下記のファイルを削除してよろしいですか？\r\n\r\nC:\\tamrin\\s";
    csv().SetFocus();
    Run({
        {"Del", "", "", "  -1"},
        {"drop b.csv", "", "", "b.csv b1/b2 0"},
        {"Del", "c", asks + "\\b.csv", "b.csv b1/b2 0"},
        {"mnuListDelFile", "o", asks + "\\b.csv", "b.csv b1/b2 -1"},
    });
    files.locked.insert("C:\\tamrin\\s\\d.csv");
    csv().SetListIndex(0);
    Run({{"Del", "oo", "を削除できません。ほかのプログラムが", "d.csv あ� 0"}});
    EXPECT_EQ(Joined(LinesOf(csv())), "d.csv/f.csv/c.tamrin");
}

TEST_F(FilesTest, RefusesWhileSomethingRuns) {
    Act("file 0");
    EXPECT_EQ(Find("txtUrl").Text(), globals.current_file);
    EXPECT_TRUE(Enabled("cmdPlay"));
    globals.activity = "play";
    Find("mnuMakeExe").SetEnabled(true);
    for (const char* act : {"file 1", "double", "drop c.tamrin", "mnuNew", "mnuOpen",
                            "mnuOpenFolder", "mnuListDelFile", "mnuMakeExe"}) {
        Run({{act, "o", "実行中は不可|「停止」して下さい！", "b.csv b1/b2 1"}});
    }
}

}  // namespace
}  // namespace tamrin::test
