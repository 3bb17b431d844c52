#include "app/scenario_files.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class FilesTest : public MainWindowTest {
protected:
    FilesTest() {
        files.contents["C:\\tamrin\\s\\b.csv"] = "b1\r\nb2\r\n";
        files.contents["C:\\tamrin\\s\\c.tamrin"] = "c\r\n";
        files.contents["C:\\tamrin\\s\\d.csv"] = "d\r\n";
        files.contents["C:\\tamrin\\s\\e.txt"] = "";
        files.contents["C:\\tamrin\\Conf.txt"] = "save folder path = .\\s\r\n";
        window.Form_Load("");
    }
    ListBox& csv() { return form().List("lstCsv"); }
    Lines Names() {
        Lines names;
        for (int i = 0; i < csv().Count(); ++i) names.emplace_back(csv().Line(i));
        return names;
    }
    void MakeUnsaved() {
        list().SetLines({"x"});
        globals.unsaved = true;
    }
    static constexpr const char* kB = "C:\\tamrin\\s\\b.csv";
};

TEST_F(FilesTest, ListsTheScenarioFilesAndOpensTheOneClicked) {
    EXPECT_EQ(Names(), (Lines{"b.csv", "d.csv", "c.tamrin"}));
    csv().SetListIndex(0);
    EXPECT_EQ(Records(), (Lines{"b1", "b2"}));
    EXPECT_EQ(globals.current_file, kB);
    EXPECT_EQ(globals.activity, "");
    EXPECT_EQ(form().Caption(), "Tamrin 0.10 < b.csv >");
    EXPECT_TRUE(Enabled("cmdPlay"));
}

TEST_F(FilesTest, AsksBeforeUnsavedRecordsAreReplaced) {
    struct Row {
        Answer answer;
        Lines records;
        bool unsaved;
        int selected;
    };
    const Row rows[] = {
        {Answer::kCancel, {"x"}, true, -1},
        {Answer::kNo, {"b1", "b2"}, false, 0},
    };
    for (const Row& row : rows) {
        form().Click("mnuNew");
        form().Click("mnuListRefresh");
        MakeUnsaved();
        dialogs.answers = {row.answer};
        csv().SetListIndex(0);
        EXPECT_EQ(Records(), row.records);
        EXPECT_EQ(globals.unsaved, row.unsaved);
        EXPECT_EQ(csv().ListIndex(), row.selected);
        globals.unsaved = false;
    }
    form().Click("mnuNew");
    MakeUnsaved();
    dialogs.answers = {Answer::kYes};
    dialogs.paths = {""};
    form().Click("mnuNew");
    EXPECT_EQ(Records(), Lines{"x"}) << "a dismissed dialog gives nothing up";
    EXPECT_TRUE(globals.unsaved);
}

TEST_F(FilesTest, RefusesWhileSomethingRuns) {
    globals.activity = "play";
    dialogs.answers.assign(6, Answer::kOk);
    csv().SetListIndex(0);
    csv().onDblClick();
    form().Click("mnuNew");
    form().Press("Ctrl+O");
    form().Click("mnuOpenFolder");
    form().onDropFiles({kB});
    EXPECT_EQ(dialogs.shown, Lines(6, "実行中は不可|「停止」して下さい！"));
    EXPECT_EQ(Records(), Lines{});
}

TEST_F(FilesTest, OpensThroughTheDialogAndTellsWhatItCannotRead) {
    files.contents["C:\\x\\a.csv"] = std::string("\xFF\xFEu\0r\0l\0", 8);
    files.contents["C:\\x\\old.csv"] = "\x82\xA0\x81\r\n";
    dialogs.paths = {"C:\\x\\gone.csv", "C:\\x\\a.csv", "C:\\x\\old.csv", ""};
    dialogs.answers = {Answer::kOk, Answer::kOk};
    csv().SetListIndex(0);
    for (int i = 0; i < 2; ++i) {
        form().Press("Ctrl+O");
        EXPECT_EQ(Records(), (Lines{"b1", "b2"}));
        EXPECT_EQ(globals.current_file, kB);
    }
    form().Press("Ctrl+O");
    EXPECT_EQ(Find("txtStatus").Text(), "読めない文字を「�」に置き換えました");
    form().Press("Ctrl+O");
    EXPECT_EQ(globals.current_file, "C:\\x\\old.csv");
    const std::string dialog = "開く|シナリオ(*.csv;*.tamrin)|C:\\tamrin\\s\\";
    EXPECT_EQ(
        dialogs.shown,
        (Lines{dialog, "読込エラー|C:\\x\\gone.csv\r\nのファイルを読み込めません。", dialog,
               "読込エラー|C:\\x\\a.csv\r\nはシナリオファイルではありません。", dialog, dialog}));
}

TEST_F(FilesTest, AsksBeforeItOverwritesWhatItCouldNotRead) {
    files.contents["C:\\x\\old.csv"] = "\x82\xA0\x81\r\n";
    form().onDropFiles({"C:\\x\\old.csv"});
    dialogs.answers = {Answer::kCancel, Answer::kOk};
    form().Press("Ctrl+S");
    EXPECT_EQ(files.contents["C:\\x\\old.csv"], "\x82\xA0\x81\r\n");
    form().Press("Ctrl+S");
    EXPECT_EQ(files.contents["C:\\x\\old.csv"], "\x82\xA0%%U+FFFD%%\r\n");
    form().Press("Ctrl+S");
    EXPECT_EQ(dialogs.shown, Lines(2,
                                   "上書きの確認|C:\\x\\old.csv\r\nには読めない文字がありました。"
                                   "上書きすると元の文字は失われます。上書きしますか？"));
}

TEST_F(FilesTest, AsksOnceForTheNameOfANewFileAndListsItInItsFolder) {
    MakeUnsaved();
    dialogs.paths = {"C:\\tamrin\\t\\new.tamrin"};
    form().Press("Ctrl+S");
    EXPECT_EQ(dialogs.shown, Lines{"名前を付けて保存|CSVファイル(*.csv)|C:\\tamrin\\s\\無題.csv"});
    EXPECT_EQ(globals.settings.save_folder_path, ".\\t");
    EXPECT_EQ(Names(), Lines{"new.tamrin"});
    EXPECT_EQ(csv().ListIndex(), 0);
    EXPECT_EQ(Records(), Lines{"x"});
    EXPECT_FALSE(globals.unsaved);
    EXPECT_EQ(form().Caption(), "Tamrin 0.10 < new.tamrin >");
    EXPECT_EQ(Find("txtStatus").Text(), "保存完了");
    EXPECT_EQ(Find("mnuRecent1").Text(), "&1 C:\\tamrin\\t\\new.tamrin");
    list().SetLines({"y"});
    form().Click("mnuSave");
    EXPECT_EQ(files.contents["C:\\tamrin\\t\\new.tamrin"], "y\r\n");
}

TEST_F(FilesTest, AFailedSaveLosesNothing) {
    csv().SetListIndex(0);
    form().Click("mnuAddUpper");
    files.locked.insert(kB);
    dialogs.answers = {Answer::kOk, Answer::kOk};
    form().Press("Ctrl+S");
    EXPECT_TRUE(globals.unsaved);
    EXPECT_EQ(files.contents[kB], "b1\r\nb2\r\n");
    files.full_disk = true;
    dialogs.paths = {"C:\\vanished\\n.csv"};
    form().Press("Ctrl+Shift+S");
    EXPECT_EQ(dialogs.shown.back(),
              "保存エラー|C:\\vanished\r\nのフォルダがありません。保存していません。");
    EXPECT_EQ(globals.current_file, kB);
    EXPECT_EQ(globals.settings.save_folder_path, ".\\s");
}

TEST_F(FilesTest, AsksBeforeItSavesOverAnotherProgramsChange) {
    csv().SetListIndex(0);
    form().Click("mnuAddUpper");
    files.contents[kB] = "other\r\n";
    dialogs.answers = {Answer::kCancel, Answer::kOk};
    form().Press("Ctrl+S");
    EXPECT_EQ(files.contents[kB], "other\r\n");
    EXPECT_TRUE(globals.unsaved);
    form().Press("Ctrl+S");
    EXPECT_EQ(files.contents[kB], "\r\nb1\r\nb2\r\n");
    form().Press("Ctrl+S");
    files.contents.erase(kB);
    form().Press("Ctrl+S");
    EXPECT_EQ(files.contents[kB], "\r\nb1\r\nb2\r\n");
    EXPECT_EQ(dialogs.shown.size(), 2U);
}

TEST_F(FilesTest, ReadsAFileAgainThatAnotherProgramChanged) {
    csv().SetListIndex(0);
    csv().onDblClick();
    files.contents[kB] = "other\r\n";
    dialogs.answers = {Answer::kCancel, Answer::kOk};
    csv().onDblClick();
    EXPECT_EQ(Records(), (Lines{"b1", "b2"}));
    csv().onDblClick();
    EXPECT_EQ(Records(), Lines{"other"});
}

TEST_F(FilesTest, MarksTheOpenFileHoweverItWasOpened) {
    csv().SetListIndex(0);
    form().onDropFiles({"C:\\tamrin\\s\\c.tamrin"});
    EXPECT_EQ(csv().ListIndex(), 2);
    form().onDropFiles({"C:\\tamrin\\order.csv"});
    EXPECT_EQ(csv().ListIndex(), -1);
    csv().SetListIndex(0);
    EXPECT_EQ(globals.current_file, kB);
}

TEST_F(FilesTest, DeletesTheSelectedFile) {
    csv().SetListIndex(1);
    csv().SetFocus();
    dialogs.answers = {Answer::kCancel, Answer::kOk};
    form().Press("Del");
    EXPECT_EQ(Names().size(), 3U);
    form().Press("Del");
    EXPECT_EQ(Names(), (Lines{"b.csv", "c.tamrin"}));
    EXPECT_FALSE(files.contents.contains("C:\\tamrin\\s\\d.csv"));
    EXPECT_EQ(dialogs.shown.back(),
              "ファイル削除|下記のファイルを削除してよろしいですか？\r\n\r\n"
              "C:\\tamrin\\s\\d.csv");
    files.locked.insert(kB);
    csv().SetListIndex(0);
    dialogs.answers = {Answer::kOk, Answer::kOk};
    form().Click("mnuListDelFile");
    EXPECT_EQ(Names(), (Lines{"b.csv", "c.tamrin"})) << "another program holds it";
}

TEST_F(FilesTest, ShowsAnotherFolder) {
    files.contents["C:\\z\\q.csv"] = "q\r\n";
    dialogs.paths = {"C:\\z", ""};
    form().Click("mnuOpenFolder");
    EXPECT_EQ(Names(), Lines{"q.csv"});
    EXPECT_EQ(globals.settings.save_folder_path, "..\\z");
    form().Click("mnuOpenFolder");
    EXPECT_EQ(dialogs.shown, (Lines{"フォルダを開く|C:\\tamrin\\s", "フォルダを開く|C:\\z"}));
}

TEST_F(FilesTest, ForgetsARecentFileThatIsGone) {
    form().onDropFiles({kB});
    files.contents.erase(kB);
    dialogs.answers = {Answer::kOk};
    form().Click("mnuRecent1");
    EXPECT_FALSE(Find("mnuRecent1").Visible());
    EXPECT_FALSE(Find("mnuFileSpc3").Visible());
}

}  // namespace
}  // namespace tamrin::test
