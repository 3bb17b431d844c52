#include "app/start_up.h"

#include "app/main_window_rig.h"
#include "scenario/player_payload.h"
#include "scenario/scenario_text.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

TEST_F(MainWindowTest, StartsIdle) {
    EXPECT_EQ(window.Form_Load(""), StartUp::kDone);
    EXPECT_TRUE(processes.raised);
    EXPECT_EQ(form().Caption(), "Tamrin 0.10");
    EXPECT_TRUE(form().Visible() && form().top_most());
    EXPECT_TRUE(Enabled("cmdRec"));
    EXPECT_FALSE(Enabled("cmdPlay"));
    EXPECT_FALSE(Find("mnuRecent1").Visible());
    EXPECT_EQ(dynamic_cast<HeadlessControl&>(Find("txtUrl")).left_margin(), 8);
    EXPECT_EQ(web.calls, Lines{});
}

TEST_F(MainWindowTest, CarriesOutTheCommandLine) {
    const std::string program = "C:\\tamrin\\order.csv";
    const std::string current = "C:\\work\\order.csv";
    const struct {
        std::string command_line;
        std::string flags;  // p: played, c: closed, t: in the tray, and an error
        std::string file = {};
        std::string browser = "kept";
        std::string shown = {};
    } rows[] = {
        {"-a order.csv", "p", current},
        {"x -a  " + program, "p", program},
        {"-auto \"" + program + "\"", "p", program},
        {"x　-a   " + program, "p", program},
        {'"' + program + '"', "p", program},
        {" order.csv ", "p", current},
        {"-Close -unknown -a " + program, "p", program},
        {"-c -a " + program + " -tasktray", "pct", program},
        {"-stream url\t,size_bar=1.2.3.4.1,indt=page\r\n//%SPC%a%SPC-%b", "pct", "stream"},
        {"-browser C:\\Program Files\\b.exe", "", "", "C:\\Program Files\\b.exe"},
        {"-browser .\\b.exe", "", "", "C:\\work\\b.exe"},
        {"-browser firefox -browser chromium", "", "", "chromium"},
        {"-a -c", "parameter", "", "kept", "パラメータエラー|aの第二パラメータ（ファイル名）"},
        {"-auto 無い a.csv -c", "none", "", "kept", "|auto\r\n無い a.csv\r\nのファイルが存在しま"},
        {"-a bad.csv", "none", "", "kept", "はシナリオファイルではありません。"},
    };
    files.contents[current] = kScenario;
    files.contents["C:\\work\\bad.csv"] = std::string("\0", 1);
    files.contents["C:\\tamrin\\bad.csv"] = "";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command_line);
        dialogs.answers.assign(row.shown.empty() ? 0 : 1, kOk);
        web.calls.clear();
        files.contents["C:\\tamrin\\Options.txt"] = "browser = kept\r\n";
        Globals fresh;
        frmIeAuto other(fresh, platform);
        const StartUp end = other.Form_Load(row.command_line);
        std::string flags = other.last_run() == RunEnd::kCompleted ? "p" : "";
        if (other.closed()) flags += "c";
        if (Find("mnuTaskTray").Checked()) flags += "t";
        if (end == StartUp::kParameterError) flags += "parameter";
        if (end == StartUp::kNoScenario) flags += "none";
        EXPECT_EQ(flags, row.flags);
        EXPECT_EQ(fresh.current_file, row.file);
        EXPECT_EQ(fresh.options.browser_path, row.browser);
        EXPECT_NE(Joined(dialogs.shown).find(row.shown), std::string::npos);
        other.Close();
        EXPECT_TRUE(files.contents["C:\\tamrin\\Options.txt"].starts_with("browser = kept\r\n"));
    }
}

TEST_F(MainWindowTest, PlaysTheTextOfTheCommandLine) {
    window.Form_Load("-stream url\t,id=,size_bar=1.2.3.4.1,indt=page\r\n//%SPC%a%SPC-%b");
    EXPECT_EQ(Records(), (Lines{"url\t,id=,size_bar=1.2.3.4.1,indt=page", "// a -b"}));
    EXPECT_EQ(Find("txtUrl").Text(), "stream");
}

// The program carries a scenario.
class PlayerTest : public MainWindowTest {
protected:
    PlayerTest() {
        files.contents["C:\\tamrin\\Conf.txt"] = "max wait time = 77\r\n";
        files.contents["C:\\tamrin\\Options.txt"] = "recent = C:\\old.csv\r\n";
        player = *MakePlayer(SampleProgram(ProgramKind::kWindows64),
                             WriteScenarioText(ScenarioTextLines(kScenario), codec, true));
    }
    std::string& player = files.contents[processes.own];
};

TEST_F(PlayerTest, PlaysAtOnceOnDefaultSettingsAndQuits) {
    const auto before = files.contents;
    std::string seen;
    for (int ms = 0; ms < 200; ms += 10) {
        After(ms, [&] {
            if (form().tray_icon()) seen = "in the tray";
            EXPECT_FALSE(form().Visible() || Enabled("mnuMakeExe"));
        });
    }
    EXPECT_EQ(window.Form_Load("-a C:\\other.csv -browser x"), StartUp::kDone);
    EXPECT_EQ(window.last_run(), RunEnd::kCompleted);
    EXPECT_EQ(web.calls.back(), "fire a onchange");
    EXPECT_EQ(seen, "in the tray");
    EXPECT_TRUE(form().closed());
    EXPECT_EQ(globals.settings.max_wait_time, Settings().max_wait_time);
    EXPECT_TRUE(globals.options.recent_files.empty());
    EXPECT_EQ(files.contents, before);
}

TEST_F(PlayerTest, IsAnOrdinaryEditorWhenTheCommandLineSaysSo) {
    EXPECT_EQ(window.Form_Load("x -no_auto_start"), StartUp::kDone);
    EXPECT_EQ(Records(), Lines{});
    EXPECT_EQ(web.calls, Lines{});
    EXPECT_EQ(globals.settings.max_wait_time, 77);
}

TEST_F(PlayerTest, SaysThatItIsDamagedAndPlaysNothing) {
    const std::string whole = player;
    const std::pair<std::string, const char*> rows[] = {
        {whole.substr(0, whole.size() - 1), "は途中で切れているため、再生できません。"},
        {std::string(whole).replace(whole.size() - 30, 1, "x"), "のシナリオが壊れているため"},
        {std::string(whole).replace(whole.size() - 12, 1, "\2"), "のシナリオは新しい版の Tamrin"},
    };
    for (const auto& [bytes, said] : rows) {
        player = bytes;
        const auto before = files.contents;
        dialogs.answers = {kOk};
        Globals fresh;
        frmIeAuto damaged(fresh, platform);
        EXPECT_EQ(damaged.Form_Load(""), StartUp::kNoScenario);
        EXPECT_NE(dialogs.shown.back().find(said), std::string::npos);
        EXPECT_TRUE(damaged.closed());
        EXPECT_EQ(web.calls, Lines{});
        EXPECT_EQ(files.contents, before);
    }
}

}  // namespace
}  // namespace tamrin::test
