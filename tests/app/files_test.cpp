#include "app/main_window_rig.h"
#include "app/paths.h"
#include "app/settings_file.h"
#include "scenario/character_escape.h"

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
        {"mnuListOpen; file 0; mnuListOpen; change b.csv x\r\n", "", "", "b.csv b1/b2 0"},
        {"mnuListOpen", "c", "読込の確認|C:\\tamrin\\s\\b.csv\r\nはほかのプログラムで",
         "b.csv b1/b2 0"},
        {"mnuListOpen", "o", "読み込み直しますか？", "b.csv x 0"},
        {"drop c.tamrin; file 2", "o", "読込エラー|C:\\tamrin\\s\\f.csv\r\nはシナリオ",
         "c.tamrin c 3"},
        {"drop gone", "o", "\\gone\r\nのファイルを読み込めません。", "c.tamrin c 3"},
        {"Ctrl+O", ">", opens, "c.tamrin c 3"},
        {"Ctrl+O; mnuListRefresh", ">C:\\tamrin\\t\\g.csv", "", "g.csv g -1"},
        {"file 3; Ctrl+N; mnuOpenFolder", ">", "フォルダを開く|C:\\tamrin\\s", "  -1"},
        {"mnuOpenFolder; file 0", ">C:\\tamrin\\t", "", "g.csv g 0"},
    });
    EXPECT_EQ(globals.settings.save_folder_path, ".\\t");
    files.contents["C:\\tamrin\\t\\g.csv:Zone.Identifier"] = "[ZoneTransfer]\r\nZoneId=3\r\n";
    Run({{"cmdPlay", "c", "\\g.csv\r\nはインターネットから取得したファイルです。", "g.csv g 0"}});
    EXPECT_TRUE(web.calls.empty());
    Run({{"cmdPlay; cmdStop; cmdPlay", "o", "再生の確認|", "g.csv g 0"}});
    EXPECT_TRUE(web.calls.size() > 1 && !files.IsFile("C:\\tamrin\\t\\g.csv:Zone.Identifier"));
}

TEST_F(FilesTest, AsksBeforeUnsavedRecordsAreReplaced) {
    const std::string asks = "Tamrin|未保存のデータがあります。保存しますか？";
    Run({
        {"type x; file 0", "c", asks, "* x -1"},
        {"file 0", "y>", "/|CSVファイル(*.csv;*tamrin)|", "* x -1"},
        {"file 0", "y>C:\\tamrin\\s\\x.csv", asks, "b.csv b1/b2 0"},
        {"type y; mnuNew", "c", asks, "b.csv* y 0"},
        {"mnuNew", "y", asks, "  -1"},
        {"drop b.csv; mnuAddUnder; drop c.tamrin", "n", asks, "c.tamrin c 4"},
    });
    EXPECT_EQ(files.contents["C:\\tamrin\\s\\b.csv"], "y\r\n");
    EXPECT_EQ(files.contents["C:\\tamrin\\s\\x.csv"], "x\r\n");
}

TEST_F(FilesTest, SavesWithoutLosingAnything) {
    const std::string names = "名前を付けて保存|CSVファイル(*.csv)|C:\\tamrin\\s\\";
    Run({
        {"drop d.csv; type x; Ctrl+S", "c",
         "には読めない文字がありました。上書きすると元の文字は失われます", "d.csv* x 1"},
        {"Ctrl+S; Ctrl+S", "o", "上書きの確認|C:\\tamrin\\s\\d.csv", "d.csv x 1"},
        {"change d.csv y\r\n; Ctrl+S", "c", "で変更されています。上書きしますか？", "d.csv x 1"},
        {"Ctrl+S; Ctrl+S", "o", "上書きの確認", "d.csv x 1"},
        {"type z; Ctrl+Shift+S", ">", names + "d.csv", "d.csv* z 1"},
        {"Ctrl+Shift+S; mnuSave", ">C:\\tamrin\\t\\z.csv", "", "z.csv z 1"},
    });
    EXPECT_EQ(Find("txtStatus").Text(), "保存完了");
    EXPECT_EQ(Joined(LinesOf(csv())), "g.csv/z.csv");
    files.loses_ends = true;
    Run({{"mnuNew; type x; mnuSave", "o>C:\\x.csv", "保存エラー|C:\\x.csv\r\nに保存した",
          "* x -1"}});
    files.full_disk = true;
    Run({
        {"mnuSave", "o>C:\\tamrin\\t\\z.csv", "z.csv\r\nに保存できません。元のファイル", "* x -1"},
        {"mnuSave", ">", "|C:\\tamrin\\t\\無題.csv", "* x -1"},
        {"mnuClose", "yo>C:\\gone\\x.csv", "C:\\gone\r\nのフォルダがありません。", "* x -1"},
        {"mnuClose", "yo>", "保存エラー|設定を保存できません。", "* x -1"},
    });
    EXPECT_TRUE(window.closed()) << "a cancelled dialog closes the window all the same";
}

TEST_F(FilesTest, DeletesTheSelectedFile) {
    csv().SetFocus();
    files.locked.insert("C:\\tamrin\\s\\d.csv");
    Run({
        {"Del; drop b.csv; Del", "c", "ファイル削除|下記のファイルを", "b.csv b1/b2 0"},
        {"mnuListDelFile", "o", "よろしいですか？\r\n\r\nC:\\tamrin\\s\\b.csv", "b.csv b1/b2 -1"},
        {"file 0; Del", "oo", "を削除できません。ほかのプログラムが", "d.csv あ� 0"},
    });
    EXPECT_EQ(Joined(LinesOf(csv())), "d.csv/f.csv/c.tamrin");
}

TEST_F(FilesTest, RefusesWhileSomethingRuns) {
    Act("file 0");
    EXPECT_EQ(Find("txtUrl").Text(), globals.current_file);
    globals.activity = "play";
    for (const char* act : {"file 1", "mnuListOpen", "drop c.tamrin", "mnuNew", "mnuOpen",
                            "mnuOpenFolder", "mnuListDelFile", "mnuMakeExe"}) {
        Run({{act, "o", "実行中は不可|「停止」して下さい！", "b.csv b1/b2 1"}});
    }
}

TEST(ResolvePath, MakesARelativePathAbsolute) {
    const char* const rows[][3] = {
        {"..\\..\\a.csv", "C:\\b", "C:\\a.csv"},
        {"x\\..\\.\\a.csv", "C:\\b", "C:\\b\\a.csv"},
        {"D:\\a.csv", "C:\\b", "D:\\a.csv"},
        {"\\\\server\\share\\a.csv", "C:\\b", "\\\\server\\share\\a.csv"},
        {"..\\..\\a.csv", "\\\\server\\share\\b", "\\\\server\\share\\a.csv"},
        {"\\a.csv", "C:\\b", "C:\\a.csv"},
        {"注文 書.csv", "", "C:\\work\\注文 書.csv"},
        {"", "C:\\b", ""},
    };
    for (const auto& [path, base, result] : rows) {
        EXPECT_EQ(ResolvePath(path, base, MemoryFiles()), result) << path;
    }
}

TEST(RelativePath, ReadsBackAgainstItsBase) {
    const char* const rows[][2] = {
        {"C:\\b\\c\\", ""},       {"C:\\b\\c\\d e", ".\\d e"},
        {"c:\\B\\C\\d", ".\\d"},  {"C:\\b", ".."},
        {"C:\\b\\x", "..\\x"},    {"C:\\", "..\\.."},
        {"D:\\b\\c", "D:\\b\\c"}, {"\\\\server\\a", "\\\\server\\a"},
    };
    for (const auto& [path, result] : rows) {
        EXPECT_EQ(RelativePath(path, "C:\\b\\c", MemoryFiles()), result) << path;
    }
}

// The default settings on a screen of 1280 x 1024 pixels.
const std::string kDefaults =
    "form left = 780\r\nform top = 724\r\nform right = 1280\r\nform bottom = 1024\r\n"
    "top height = 1035\r\nauto point = 1\r\nrec change only = 0\r\nasync = 0\r\ncipher = 0\r\n"
    "disp = 1\r\ndisp top = 1\r\nscroll bar = 0\r\nsave folder path = \r\nmouse click = 1\r\n"
    "tasktray = 0\r\nquit after play = 0\r\nplay count = 1\r\nmax wait time = 10\r\n";
// Other values of all of them.
const std::string kOthers =
    "form left = -100\r\nform top = 1\r\nform right = 600\r\nform bottom = 700\r\n"
    "top height = 1500\r\nauto point = 0\r\nrec change only = 1\r\nasync = 1\r\ncipher = 1\r\n"
    "disp = 2\r\ndisp top = 0\r\nscroll bar = 1\r\nsave folder path = ..\\注文 \r\nmouse click = 0\r\n"
    "tasktray = 1\r\nquit after play = 1\r\nplay count = 9\r\nmax wait time = 120\r\n";

class SettingsTest : public MainWindowTest {
protected:
    // The lines of the settings files that are not the default ones.
    std::string State() override {
        const Lines defaults = Split(kDefaults + WriteOptions({}), "\r\n");
        Lines changed;
        for (const std::string& line :
             Split(WriteConf(globals.settings) + WriteOptions(globals.options), "\r\n")) {
            if (std::ranges::find(defaults, line) == defaults.end()) changed.push_back(line);
        }
        EXPECT_EQ(
            Find("mnuRepeat").Text(),
            "再生回数変更(&N)：現在値 " + std::to_string(globals.settings.play_count) + " 回...");
        return Joined(changed);
    }
    // What a file holds when a window that began with this text has closed.
    std::string WrittenBack(const std::string& path, const std::string& text) {
        files.contents = {{path, ""}};
        AppendEncoded(files.contents[path], text, codec);
        Globals fresh;
        frmIeAuto other(fresh, platform);
        other.Form_Load("");
        other.Close();
        return UnescapeCharacters(codec.Decode(files.contents[path]));
    }
    // A text with another line of the same key.
    static std::string With(std::string text, const std::string& line) {
        const auto at = text.find(line.substr(0, line.find('=')));
        return text.replace(at, text.find('\r', at) - at, line);
    }
    const std::string kConf = "C:\\tamrin\\Conf.txt";
    const std::string kOptions = "C:\\tamrin\\Options.txt";
};

TEST_F(SettingsTest, AreReadAndWrittenBack) {
    // Enciphering and the play count are not read back.
    EXPECT_EQ(WrittenBack(kConf, kOthers), With(With(kOthers, "cipher = 0"), "play count = 1"));
    const std::pair<const char*, const char*> rows[] = {
        {"scipher = 1", "cipher = 1"},
        {"max wait time", "max wait time = 10"},
        {"max wait time = 1 = 2", "max wait time = 10"},
        {" 　MAX Wait time  =   30  \r\n", "max wait time = 30"},
        {"max wait time = 2.5\n", "max wait time = 2"},
        {"max wait time = 99999999999999999999", "max wait time = 2147483647"},
        {"x=\n==\n = 5\nmax wait time = 5\nmax wait time = x", "max wait time = 0"},
        {"save folder path =  C:\\😀", "save folder path = C:\\😀"},
        // Impossible places.
        {"form left = 900\nform right = 900", "form left = 780"},
        {"form top = 800\nform bottom = 700", "form bottom = 1024"},
        {"top height = -9", "top height = 450"},
        {"disp = 3", "disp = 1"},
        {"disp = -1", "disp = 1"},
    };
    for (const auto& [text, line] : rows) {
        EXPECT_EQ(WrittenBack(kConf, text), With(kDefaults, line));
    }
    const std::string options =
        "browser kind = chromium\r\ntrace = C:\\calls.txt\r\ndebug address = h:1\r\n"
        "record limit = 0\r\ntool panel = 1\r\n"
        "recent = 1\r\nrecent = 2\r\nrecent = 3\r\nrecent = 4\r\nrecent = 5\r\n";
    EXPECT_EQ(WrittenBack(kOptions, options + "recent = 6\n Browser =  \"C:\\a=b.exe\"\nrecent ="),
              "browser = C:\\a=b.exe\r\n" + options);
    EXPECT_EQ(WrittenBack(kOptions, "junk\r\nfoo = bar\r\nbrowser kind = x\nrecord limit = x"),
              "browser = \r\n");
    EXPECT_EQ(WrittenBack(kOptions, "browser kind = Explorer"),
              "browser = \r\nbrowser kind = explorer\r\n");
}

TEST_F(SettingsTest, KeepTheRecentFiles) {
    files.contents[kOptions] = "recent = C:\\%%U+1F600%% & co.csv\r\n";
    window.Form_Load("");
    EXPECT_EQ(Find("mnuRecent1").Text(), "&1 C:\\😀 && co.csv");
    for (const char* name : {"1", "2", "3", "4", "5", "2"}) {
        files.contents[name] = "x\r\n";
        form().onDropFiles({name});
    }
    files.contents.erase("3");
    Run({{"mnuRecent3", "", "", "recent = 4/recent = 2/recent = 5/recent = 3/recent = 1"},
         {"mnuRecent4", "o", "のファイルが存在", "recent = 4/recent = 2/recent = 5/recent = 1"}});
    EXPECT_FALSE(Find("mnuRecent5").Visible());
}

TEST_F(SettingsTest, AreStoredByOkAndShownAgain) {
    window.Form_Load("");
    files.contents["C:\\tamrin\\s\\a.csv"] = "";
    const std::string some =
        "mnuSetting: txtSaveFolderPath=x, cmbMaxWaitTime=2.5, chkQuitAfterPlay, optBrowser 1";
    const std::string others =
        "mnuSetting: cmdSetDefault, chkMouseClick, chkCipherData, txtBrowser= \"b.exe\", optBrowser 2";
    const std::string again = ", cmdClose 0; mnuSetting: cmdClose 0";
    const std::string options = "browser = b.exe/browser kind = chromium";
    const std::string input = "再生回数|1 から 99999 までの数を入力してください。";
    Run({
        {some + ", cmdClose 1", "", "", ""},
        {some + again, "", "",
         "save folder path = x/quit after play = 1/max wait time = 2/browser kind = explorer"},
        {others + again, "", "", "cipher = 1/mouse click = 0/" + options},
        {"mnuSetting: cmdSetDefault, chkRecChangeData, chkAutoPoint, cmdClose 1", "", "",
         "auto point = 0/rec change only = 1/" + options},
        {"mnuSetting: cmdSetDefault, cmdClose 0; mnuRepeat: txtInput=9, cmdCancel", "", "",
         options},
        {"mnuRepeat: txtInput=3, cmdOk; mnuRepeat: cmdOk", "", "", "play count = 3/" + options},
        {"mnuRepeat: txtInput=0, cmdOk, txtInput=100000, cmdOk, txtInput=99999, cmdOk", "oo", input,
         "play count = 99999/" + options},
        {"mnuSetting: cmdSetDefault, cmdClose 0", "", "", options},
        {"mnuSetting: cmdSaveFolder, cmdClose 0", ">C:\\tamrin\\s", "既定フォルダの指定|C:\\tamrin",
         "save folder path = .\\s/" + options},
        {"mnuSetting: cmdSetDefault, cmdClose 0", "", "", options},
        {"mnuAbout: cmdSysInfo, cmdOk", "o", "システム情報は現在利用できません。", options},
        {"F1", "o", "使い方|C:\\tamrin\\manual.ja.html\r\nの使い方のファイルがありません。",
         options},
    });
    // The browser of the command line is for this run only.
    globals.options = Options();
    globals.options.browser_path = "run.exe";
    globals.options.kept_browser_path = "kept.exe";
    Run({{"mnuSetting: cmdBrowser, cmdClose 0", ">", "|kept.exe", "browser = kept.exe"}});
    EXPECT_EQ(globals.options.browser_path, "run.exe");
    Run({{"mnuSetting: cmdBrowser, cmdClose 0", ">new.exe", "", "browser = new.exe"}});
}

}  // namespace
}  // namespace tamrin::test
