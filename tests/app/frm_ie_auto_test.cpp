#include "app/main_window_rig.h"
#include "scenario/player_payload.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

TEST_F(MainWindowTest, StartsIdleUnderASplash) {
    EXPECT_EQ(window.Form_Load(""), StartUp::kDone);
    EXPECT_TRUE(processes.raised && form().Visible() && form().top_most() && Enabled("cmdRec"));
    EXPECT_EQ(dynamic_cast<HeadlessControl&>(Find("txtUrl")).left_margin(), 6);
    HeadlessForm& splash = *windows.FindForm("frmSplash");
    EXPECT_TRUE(splash.GetPlace().left == 890 && splash.GetPlace().top == 822);
    clock.Pass(3000);
    EXPECT_TRUE(splash.closed() && web.calls.empty());
}

TEST_F(MainWindowTest, CarriesOutTheCommandLine) {
    const std::string program = "C:\\tamrin\\order.csv";
    const std::string current = "C:\\work\\order.csv";
    const std::string taro = "C:\\Yamada Taro\\a -b.csv";
    const struct {
        std::string command_line;
        std::string flags;  // p: played, its count, c: closed, t: in the tray, and an error
        std::string file = {};
        std::string browser = "kept";
        std::string shown = {};
    } rows[] = {
        {"-auto \"" + program + "\"", "p", program},
        {"x　-a   " + program, "p", program},
        {'"' + taro + '"', "p", taro},
        {" order.csv ", "p", current},
        {"-Close -unknown -a C:\\Yamada Taro\\b.csv", "p", "C:\\Yamada Taro\\b.csv"},
        {"-c -a " + program + " -tasktray", "pct", program},
        {"-stream url\t,size_bar=1.2.3.4.1,indt=page\r\n//%SPC%a%SPC-%b", "pct", "stream"},
        {"-browser .\\b.exe", "", "", "C:\\work\\b.exe"},
        {"-browser firefox -browser chromium", "", "", "chromium"},
        {"-count 3 -a order.csv", "p3", current},
        {"-count 0", "parameter", "", "kept", "パラメータエラー|count\r\n1 から 99999 までの"},
        {"-a -c", "parameter", "", "kept", "パラメータエラー|aの第二パラメータ（ファイル名）"},
        {"-auto 無い a.csv -c", "none", "", "kept", "|auto\r\n無い a.csv\r\nのファイルが存在しま"},
        {"-a bad.csv", "none", "", "kept", "はシナリオファイルではありません。"},
    };
    for (const auto& path : {current, taro, rows[4].file}) files.contents[path] = kScenario;
    files.contents["C:\\work\\bad.csv"] = std::string("\0", 1);
    files.contents["C:\\tamrin\\bad.csv"] = "";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command_line);
        dialogs.answers.assign(row.shown.empty() ? 0 : 1, kOk);
        files.contents["C:\\tamrin\\Options.txt"] = "browser = kept\r\n";
        files.contents.erase("C:\\tamrin\\Conf.txt");
        Globals fresh;
        frmIeAuto other(fresh, platform);
        const StartUp end = other.Form_Load(row.command_line);
        std::string flags = other.last_run() == RunEnd::kCompleted ? "p" : "";
        if (fresh.settings.play_count > 1) flags += std::to_string(fresh.settings.play_count);
        if (other.closed()) flags += "c";
        if (Find("mnuTaskTray").Checked()) flags += "t";
        if (end != StartUp::kDone) flags += end == StartUp::kParameterError ? "parameter" : "none";
        EXPECT_EQ(flags + "|" + fresh.current_file + "|" + fresh.options.browser_path,
                  row.flags + "|" + row.file + "|" + row.browser);
        EXPECT_NE(Joined(dialogs.shown).find(row.shown), std::string::npos);
        EXPECT_TRUE(row.file != "stream" || Records().back() == "// a -b");
        other.Close();
        EXPECT_EQ(files.IsFile("C:\\tamrin\\Conf.txt"), !fresh.close_after_play);
        EXPECT_TRUE(files.contents["C:\\tamrin\\Options.txt"].starts_with("browser = kept\r\n"));
    }
}

// A program that carries a scenario, and the menu entry that makes it.
class PlayerTest : public MainWindowTest {
protected:
    PlayerTest() {
        files.contents["C:\\tamrin\\Conf.txt"] = "max wait time = 77\r\n";
        files.contents["C:\\tamrin\\Options.txt"] = "recent = C:\\old.csv\r\n";
        files.contents["D:\\配布\\readme.txt"] = "";
        window.Form_Load("");
        EXPECT_FALSE(Enabled("mnuMakeExe"));
        window.Open("C:\\tamrin\\order.csv");
    }
    std::string State() override { return Find("txtStatus").Text() + files.contents["old"]; }

    std::string& program = files.contents[processes.own] = SampleProgram(ProgramKind::kWindows64);
    const std::string kPlayer = "D:\\配布\\注文.exe";
};

TEST_F(PlayerTest, PlaysTheListAtOnceOnDefaultSettingsAndQuits) {
    Run({{"mnuMakeExe", ">" + kPlayer, "", "実行形式で保存しました：" + kPlayer}});
    EXPECT_EQ(processes.runnable, std::set<std::string>{kPlayer});
    EXPECT_TRUE(ReadPayload(files, kPlayer).scenario.starts_with("CIPHER\r\n"));
    processes.own = kPlayer;
    const auto before = files.contents;
    Globals own;
    frmIeAuto player(own, platform);
    bool tray = false;
    web.on_call["fire a onchange"] = [&] {
        tray = form().tray_icon() && !form().Visible() && !Enabled("mnuMakeExe");
    };
    EXPECT_EQ(player.Form_Load("-a C:\\other.csv -browser x"), StartUp::kDone);
    EXPECT_EQ(player.last_run(), RunEnd::kCompleted);
    EXPECT_TRUE(tray && player.closed() && own.options.recent_files.empty());
    EXPECT_EQ(own.settings.max_wait_time, Settings().max_wait_time);
    EXPECT_EQ(files.contents, before);
}

TEST_F(PlayerTest, HasTheNameOfTheScenarioAndIsMadeOfAWholeProgram) {
    const std::pair<const char*, const char*> names[] = {{"stream", "tamrin\\無題.exe"},
                                                         {"C:\\a.b\\order", "a.b\\order.exe"},
                                                         {"C:\\a.b\\注文.2.csv", "注文.2.exe"}};
    for (const auto& [file, proposed] : names) {
        globals.current_file = file;
        Run({{"mnuMakeExe", ">", proposed, ""}});
    }
    const std::string whole = program;
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[&] { processes.running = {"old"}; }, "old\r\nは実行中か使用中のため、"},
        {[&] { program.replace(0, 2, "??"); }, processes.own + "\r\nは壊れているため"},
        {[&] { files.full_disk = true; }, "old\r\nに保存できません。"},
        {[&] { list().SetLines({"click\t,id=ok"}); }, "最初に開くページ（url の行）がないため"},
    };
    files.contents["old"] = "old";
    for (const auto& [spoil, said] : rows) {
        spoil();
        Run({{"mnuMakeExe", "o>old", "保存エラー|" + said, "old"}});
        program = whole;
        processes.running.clear();
    }
}

// A scenario that waits after it has opened a page.
std::string Waiting(const std::string& page, const std::string& ms) {
    return "url\t,size_bar=1.2.3.4.1,indt=" + page + "\n//\twait\nwait\t,indt=" + ms + "\n";
}

TEST_F(MainWindowTest, ShowsItsProgressUntilItIsStopped) {
    files.contents["C:\\tamrin\\order.csv"] = Waiting("page", "60000");
    window.Form_Load("");
    window.Open("C:\\tamrin\\order.csv");
    for (const char* stop : {"cmdStop", "Esc", "Shift+F5"}) {
        SCOPED_TRACE(stop);
        web.calls.clear();
        const auto start = clock.Elapsed();
        std::string caption;
        clock.After(300, [&] {
            caption = form().Caption();
            Act("F5");  // it runs already
        });
        clock.After(3000, [&] {
            Act(stop);
            EXPECT_TRUE(window.Stopping());
        });
        Act("cmdPlay");
        EXPECT_EQ(caption, "(3/3) Tamrin 0.10 < order.csv >");
        EXPECT_EQ(form().Caption(), "Tamrin 0.10 < order.csv >");
        EXPECT_EQ(std::ranges::count(web.calls, "create"), 1);
        EXPECT_TRUE(window.last_run() == RunEnd::kStopped && Enabled("cmdPlay"));
        EXPECT_EQ(clock.Elapsed() - start, 3000U);
        EXPECT_FALSE(Enabled("cmdStop") || globals.unsaved || window.Stopping());
    }
    // A skipped wait leaves its click out.
    list().SetLines({"url\t,size_bar=1.2.3.4.1,indt=page", "click\t,id=ok,userwait=60"});
    const auto start = clock.Elapsed();
    clock.After(1000, [&] { Act("F6"); });
    Act("F5");
    EXPECT_TRUE(clock.Elapsed() - start < 3000 && window.last_run() == RunEnd::kCompleted);
    EXPECT_FALSE(Enabled("mnuSkip") || web.calls.back() == "click ok");
    list().SetLines(SplitLines(Waiting("page", "60000")));
    // No watchdog ends a run that was started by hand.
    globals.settings.play_count = 2;
    Act("F5");
    EXPECT_EQ(window.last_run(), RunEnd::kCompleted);
    EXPECT_EQ(std::ranges::count(web.calls, "navigate page"), 4);
    // Nor does a close that the user cancels.
    globals.settings.quit_after_play = globals.unsaved = true;
    dialogs.answers = {kCancel};
    Act("F5");
    EXPECT_TRUE(Enabled("cmdPlay") && globals.activity.empty() && form().Visible());
}

TEST_F(MainWindowTest, TheWatchdogEndsAnAutomaticRunWithoutPages) {
    // With unsaved records the user is asked, once, and cancels.
    const std::tuple<const char*, const char*, double, bool> rows[] = {
        {"", "3 行目の再生中、30 秒のあいだ", 46000, false},
        {"record limit = 20", "3 行目の再生が 20 秒たっても", 41000, false},
        {"record limit = 20", "3 行目の再生が 20 秒たっても", 645000, true},
    };
    files.contents["C:\\tamrin\\order.csv"] = Waiting("gone", "600000");
    for (const auto& [options, why, ended, unsaved] : rows) {
        files.contents["C:\\tamrin\\Options.txt"] = options;
        files.contents["C:\\tamrin\\Tamrin.log"].clear();
        Globals own;
        frmIeAuto other(own, platform);
        const auto start = clock.Elapsed();
        clock.After(15000, [&] { other.DocumentComplete(false); });
        clock.After(15000, [&, edited = unsaved] { own.unsaved = edited; });
        if (unsaved) dialogs.answers = {kCancel};
        other.Form_Load("-a C:\\tamrin\\order.csv");
        EXPECT_TRUE(other.page_failed() && other.last_run() == RunEnd::kTimedOut);
        EXPECT_TRUE(form().closed() != unsaved && form().Visible() == unsaved);
        EXPECT_NEAR(static_cast<double>(clock.Elapsed() - start), ended, 1100.0);
        const std::string said = Find("txtStatus").Text();
        EXPECT_EQ(codec.Decode(files.contents["C:\\tamrin\\Tamrin.log"]),
                  "2026-01-02 03:04:05 C:\\tamrin\\order.csv：" + said + "\r\n");
        EXPECT_TRUE(said.starts_with(why)) << said;
    }
}

TEST_F(MainWindowTest, DisplayOptionsTakeEffectAndAreStored) {
    window.Form_Load("");
    for (const char* entry : {"mnuDispTop", "mnuScrollBar", "mnuTaskTray"}) Act(entry);
    EXPECT_FALSE(form().top_most() || Find("mnuDispTop").Checked());
    EXPECT_TRUE(dynamic_cast<HeadlessListBox&>(list()).horizontal_scroll());
    const Place before = list().GetPlace();
    form().Click("optDisp", 0);
    EXPECT_TRUE(list().GetPlace().top == 34 && !Find("splTop").Visible());
    Act("mnuToolPanel");
    EXPECT_TRUE(Find("txtPlace").Visible() && list().GetPlace().height == before.height + 50);
    Act("mnuToolPanel");
    form().Click("optDisp", 2);
    EXPECT_TRUE(Find("lstDetail").Visible() && !Find("lstCsv").Visible());
    const int bottom = before.top + before.height;
    const std::pair<int, int> rows[] = {
        {103, before.top}, {100, 105}, {-50, 69}, {5000, bottom - 30}};
    for (const auto& [dragged_to, list_top] : rows) {
        Find("splTop").SetPlace({.left = 6, .top = dragged_to, .width = 468, .height = 5});
        Find("splTop").onChange();
        EXPECT_EQ(list().GetPlace().top, list_top) << dragged_to;
        EXPECT_EQ(list().GetPlace().top + list().GetPlace().height, bottom);
    }
    EXPECT_TRUE(globals.settings.disp == 2 && globals.settings.tasktray);
}

}  // namespace
}  // namespace tamrin::test
