#include "app/frm_ie_auto.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

TEST_F(MainWindowTest, StartsIdle) {
    EXPECT_EQ(window.Form_Load(""), StartUp::kDone);
    EXPECT_TRUE(processes.raised);
    EXPECT_EQ(form().Caption(), "Tamrin 0.10");
    EXPECT_TRUE(Enabled("cmdRec"));
    EXPECT_FALSE(Enabled("cmdPlay"));
    EXPECT_EQ(globals.settings.form_left, 780);
    EXPECT_EQ(globals.settings.play_count, 1);
    EXPECT_EQ(web.calls, Lines{});
}

TEST_F(MainWindowTest, LoadsAndPlaysTheScenarioOfTheCommandLine) {
    const char* const command_lines[] = {
        "-a order.csv",
        "x -a  C:\\tamrin\\order.csv",
        "-auto \"C:\\tamrin\\order.csv\"",
        "x　-a   C:\\tamrin\\order.csv",
        "\"C:\\tamrin\\order.csv\"",
        " order.csv ",
        "-Close -unknown -a C:\\tamrin\\order.csv",
    };
    for (const char* command_line : command_lines) {
        files.contents["C:\\work\\order.csv"] = kScenario;
        web.calls.clear();
        Globals fresh;
        frmIeAuto form(fresh, {windows, clock, files, codec, processes, web, browsers});
        EXPECT_EQ(form.Form_Load(command_line), StartUp::kDone) << command_line;
        EXPECT_EQ(form.last_run(), RunEnd::kCompleted) << command_line;
        ASSERT_FALSE(web.calls.empty()) << command_line;
        EXPECT_EQ(web.calls.back(), "fire a onchange") << command_line;
        EXPECT_FALSE(fresh.close_after_play);
        EXPECT_TRUE(fresh.auto_play);
    }
}

TEST_F(MainWindowTest, SaysWhatACommandLineLacksAndIgnoresTheRest) {
    const struct {
        const char* command_line;
        StartUp end;
        const char* shown;
    } rows[] = {
        {"-a -close", StartUp::kParameterError,
         "パラメータエラー|aの第二パラメータ（ファイル名）がありません！"},
        {"-auto 無い ファイル.csv -close", StartUp::kNoScenario,
         "Tamrin|auto\r\n無い ファイル.csv\r\nのファイルが存在しません。"},
    };
    for (const auto& row : rows) {
        dialogs.answers = {Answer::kOk};
        EXPECT_EQ(window.Form_Load(row.command_line), row.end);
        EXPECT_EQ(dialogs.shown.back(), row.shown);
        EXPECT_FALSE(globals.close_after_play);
        EXPECT_FALSE(globals.auto_play);
    }
}

TEST_F(MainWindowTest, PlaysAScenarioTextAndCloses) {
    window.Form_Load("-stream url\t,id=,size_bar=1.2.3.4.1,indt=page\r\n//%SPC%a%SPC-%b");
    EXPECT_EQ(Records(), (Lines{"url\t,id=,size_bar=1.2.3.4.1,indt=page", "// a -b"}));
    EXPECT_EQ(globals.current_file, "stream");
    EXPECT_EQ(Find("txtUrl").Text(), "stream");
    EXPECT_TRUE(Find("mnuTaskTray").Checked());
    EXPECT_TRUE(form().closed());
}

TEST_F(MainWindowTest, ReadsTheOtherSwitches) {
    window.Form_Load("-c -browser C:\\Program Files\\b.exe");
    EXPECT_TRUE(globals.close_after_play);
    EXPECT_EQ(globals.options.browser_path, "C:\\Program Files\\b.exe");
}

TEST_F(MainWindowTest, SwitchesTheButtonsByMode) {
    // Rec, Play and Stop, "1" for enabled; all start as "0", the list holds a line.
    struct Row {
        const char* activity;
        const char* mode;
        bool on;
        const char* buttons;
    };
    const Row rows[] = {
        {"", "all", true, "110"},        {"", "rec", true, "001"},
        {"", "rec", false, "110"},       {"", "play", true, "001"},
        {"", "play", false, "110"},      {"rec", "stop", true, "110"},
        {"rec", "stop", false, "011"},   {"play", "stop", true, "010"},
        {"play", "stop", false, "111"},  {"", "stop", true, "010"},
        {"", "play check", true, "010"}, {"", "no such", true, "000"},
    };
    form().List("lstDtList").SetLines({"x"});
    const char* const names[] = {"cmdRec", "cmdPlay", "cmdStop"};
    for (const Row& row : rows) {
        for (const char* name : names) Find(name).SetEnabled(false);
        globals.activity = row.activity;
        window.SetMode(row.mode, row.on);
        std::string buttons;
        for (const char* name : names) buttons += Enabled(name) ? '1' : '0';
        EXPECT_EQ(buttons, row.buttons) << row.mode << row.on << row.activity;
    }
    form().List("lstDtList").SetLines({});
    window.SetMode("all", true);
    EXPECT_FALSE(Enabled("cmdPlay"));
}

TEST_F(MainWindowTest, PlaysOneRunUntilTheButtonStopsIt) {
    files.contents["C:\\tamrin\\order.csv"] =
        "url\t,size_bar=1.2.3.4.1,indt=page\nwait\t,indt=60000\n";
    clock.At(300, [&] { Find("mnuPlay").onClick(); });
    clock.At(3000, [&] { Find("cmdStop").onClick(); });
    window.Form_Load("-a C:\\tamrin\\order.csv");
    EXPECT_EQ(std::count(web.calls.begin(), web.calls.end(), "create"), 1);
    EXPECT_EQ(window.last_run(), RunEnd::kStopped);
    EXPECT_EQ(clock.Elapsed(), 3000U);
    EXPECT_TRUE(Enabled("cmdPlay"));
    EXPECT_FALSE(Enabled("cmdStop"));
}

TEST_F(MainWindowTest, TheWatchdogEndsAnAutoStartedRunWithoutPages) {
    files.contents["C:\\tamrin\\order.csv"] =
        "url\t,size_bar=1.2.3.4.1,indt=page\nwait\t,indt=600000\n";
    window.Form_Load("-a C:\\tamrin\\order.csv");
    EXPECT_EQ(window.last_run(), RunEnd::kTimedOut);
    EXPECT_TRUE(form().closed());
    EXPECT_FALSE(form().Visible());
    EXPECT_NEAR(static_cast<double>(clock.Elapsed()), 31000.0, 1100.0);
    EXPECT_EQ(codec.Decode(files.contents["C:\\tamrin\\Tamrin.log"]),
              "2026-01-02 03:04:05 C:\\tamrin\\order.csv：2 行目の再生中、30 秒のあいだ"
              "ページの読み込みが完了しなかったため、終了しました。\r\n");
}

TEST_F(MainWindowTest, ShowsTheFileAndHowFarTheRunHasCome) {
    files.contents["C:\\tamrin\\order.csv"] =
        "url\t,size_bar=1.2.3.4.1,indt=page\n//\twait\nwait\t,indt=500\n";
    std::string caption;
    clock.At(300, [&] { caption = form().Caption(); });
    window.Form_Load("-a C:\\tamrin\\order.csv");
    EXPECT_EQ(caption, "(3/3) Tamrin 0.10 < order.csv >");
    EXPECT_EQ(form().Caption(), "Tamrin 0.10 < order.csv >");
    EXPECT_EQ(Find("txtUrl").Text(), "C:\\tamrin\\order.csv");
    EXPECT_EQ(globals.current_file, "C:\\tamrin\\order.csv");
    EXPECT_FALSE(globals.unsaved);
}

TEST_F(MainWindowTest, AHandStartedRunHasNoWatchdog) {
    window.Form_Load("");
    form().List("lstDtList").SetLines({"url\t,size_bar=1.2.3.4.1,indt=page", "wait\t,indt=90000"});
    window.cmdPlay_Click();
    EXPECT_EQ(window.last_run(), RunEnd::kCompleted);
}

TEST_F(MainWindowTest, ReportsAPageThatCannotBeOpened) {
    files.contents["C:\\tamrin\\order.csv"] = "url\t,size_bar=1.2.3.4.1,indt=gone\n";
    window.Form_Load("-a C:\\tamrin\\order.csv");
    EXPECT_TRUE(window.page_failed());
    EXPECT_EQ(Find("txtStatus").Text(), "ページを開けません：gone （no page）");
}

TEST_F(MainWindowTest, OpensTheFileListsMenuOnlyWhenIdle) {
    window.Form_Load("");
    Find("lstCsv").onContext();
    EXPECT_EQ(form().popped_up(), "mnuListEdit");
    globals.activity = "rec";
    dialogs.answers = {Answer::kOk};
    Find("lstCsv").onContext();
    EXPECT_EQ(dialogs.shown, Lines{"実行中は不可|「停止」して下さい！"});
}

class CloseTest : public MainWindowTest {
protected:
    // Closes with an unsaved line in the list; whether it closed.
    bool CloseUnsaved() {
        form().List("lstDtList").SetLines({"x"});
        globals.unsaved = true;
        return window.Close();
    }
    static constexpr const char* kQuestion = "Tamrin|未保存のデータがあります。保存しますか？";
    static constexpr const char* kDialog = "|CSVファイル(*.csv;*tamrin)|";
};

TEST_F(CloseTest, AsksOnlyAboutUnsavedRecords) {
    globals.unsaved = true;
    EXPECT_TRUE(window.Close());
    EXPECT_TRUE(window.Close());
}

TEST_F(CloseTest, ClosesOnlyWhenTheRecordsAreSavedOrGivenUp) {
    dialogs.answers = {Answer::kCancel};
    EXPECT_FALSE(CloseUnsaved());
    EXPECT_TRUE(globals.unsaved);
    EXPECT_EQ(dialogs.shown, Lines{kQuestion});
    files.full_disk = true;
    dialogs.answers = {Answer::kYes, Answer::kOk};
    dialogs.paths = {"C:\\new.csv"};
    EXPECT_FALSE(CloseUnsaved());
    EXPECT_TRUE(globals.unsaved);
    EXPECT_EQ(dialogs.shown.back(),
              "保存エラー|C:\\new.csv\r\nに保存できません。元のファイルはそのままです。\r\n"
              "ディスクの空き、書き込みの禁止、ほかのプログラムの使用をお確かめください。");
    files.full_disk = false;
    dialogs.answers = {Answer::kNo};
    EXPECT_TRUE(CloseUnsaved());
    EXPECT_FALSE(globals.unsaved);
}

TEST_F(CloseTest, YesSavesUnderTheChosenName) {
    dialogs.answers = {Answer::kYes};
    dialogs.paths = {"C:\\new.csv"};
    EXPECT_TRUE(CloseUnsaved());
    EXPECT_EQ(dialogs.shown, (Lines{kQuestion, kDialog}));
    EXPECT_EQ(files.contents["C:\\new.csv"], "x\r\n");
}

TEST_F(CloseTest, YesSavesAnOpenedFileWithoutAsking) {
    globals.current_file = "C:\\old.csv";
    dialogs.answers = {Answer::kYes};
    EXPECT_TRUE(CloseUnsaved());
    EXPECT_EQ(files.contents["C:\\old.csv"], "x\r\n");
}

TEST_F(CloseTest, YesAndADismissedDialogClosesAllTheSame) {
    dialogs.answers = {Answer::kYes};
    dialogs.paths = {""};
    EXPECT_TRUE(CloseUnsaved());
}

}  // namespace
}  // namespace tamrin::test
