#include "app/player_maker.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"
#include "scenario/player_payload.h"
#include "scenario/scenario_text.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

constexpr const char* kPlayer = "D:\\配布\\注文.exe";

class PlayerMakerTest : public MainWindowTest {
protected:
    PlayerMakerTest() {
        files.contents[processes.own] = SampleProgram(ProgramKind::kWindows64);
        files.contents["D:\\配布\\readme.txt"] = "";
    }

    void OpenOrder() {
        window.Form_Load("");
        window.Open("C:\\tamrin\\order.csv");
    }
    // Chooses the menu's entry and this name.
    void Make(const std::string& path) {
        dialogs.paths = {path};
        Find("mnuMakeExe").onClick();
    }
    // The file of a player that carries the scenario.
    std::string Player() {
        const Lines lines = ScenarioTextLines(kScenario);
        return *MakePlayer(files.contents[processes.own], WriteScenarioText(lines, codec, true));
    }
};

TEST_F(PlayerMakerTest, WritesAProgramThatPlaysTheList) {
    OpenOrder();
    Make(kPlayer);
    EXPECT_EQ(dialogs.shown.back(), "実行形式で保存|実行ファイル(*.exe)|C:\\tamrin\\order.exe");
    EXPECT_EQ(Find("txtStatus").Text(), std::string("実行形式で保存しました：") + kPlayer);
    EXPECT_EQ(processes.runnable, std::set<std::string>{kPlayer});
    const Payload payload = ReadPayload(files, kPlayer);
    EXPECT_EQ(ReadScenarioText(payload.scenario, codec), Records());
    EXPECT_TRUE(payload.scenario.starts_with("CIPHER\r\n"));
}

TEST_F(PlayerMakerTest, ProposesTheNameOfTheScenario) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "C:\\tamrin\\無題.exe"},
        {"stream", "C:\\tamrin\\無題.exe"},
        {"C:\\a.b\\注文.2.csv", "C:\\a.b\\注文.2.exe"},
        {"C:\\a.b\\order", "C:\\a.b\\order.exe"},
    };
    window.Form_Load("");
    for (const auto& [file, proposed] : rows) {
        globals.current_file = file;
        Make("");
        EXPECT_TRUE(dialogs.shown.back().ends_with(std::string("|") + proposed)) << file;
    }
}

TEST_F(PlayerMakerTest, SaysWhyItCannot) {
    OpenOrder();
    const std::string own = processes.own;
    const std::string whole = files.contents[own];
    const struct {
        std::function<void()> spoil;
        std::string said;
    } rows[] = {
        {[&] { processes.running = {kPlayer}; },
         std::string(kPlayer) +
             "\r\nは実行中か使用中のため、置き換えられません。\r\n別の名前を付けてください。"},
        {[&] { files.locked = {kPlayer}; },
         std::string(kPlayer) +
             "\r\nに保存できません。元のファイルはそのままです。\r\n"
             "ディスクの空き、書き込みの禁止、ほかのプログラムの使用をお確かめください。"},
        {[&] { files.contents[own] = Player().substr(0, 5020); },
         own + "\r\nは壊れているため、実行形式のもとにできません。"},
        {[&] { files.contents.erase(own); }, own + "\r\nのファイルを読み込めません。"},
        {[&] { list().SetLines({"click\t,id=ok"}); },
         "最初に開くページ（url の行）がないため、再生できるものがありません。"},
    };
    for (const auto& row : rows) {
        row.spoil();
        files.contents[kPlayer] = "old";
        dialogs.answers = {Answer::kOk};
        Make(kPlayer);
        EXPECT_EQ(dialogs.shown.back(), "保存エラー|" + row.said);
        EXPECT_EQ(files.contents[kPlayer], "old");
        files.contents[own] = whole;
        files.locked.clear();
        processes.running.clear();
    }
    EXPECT_EQ(Find("txtStatus").Text(), "");
}

TEST_F(PlayerMakerTest, CanBeChosenWhenThereIsSomethingToPlay) {
    window.Form_Load("");
    EXPECT_FALSE(Enabled("mnuMakeExe"));
    window.Open("C:\\tamrin\\order.csv");
    EXPECT_TRUE(Enabled("mnuMakeExe"));
    for (const char* mode : {"play", "rec"}) {
        window.SetMode(mode, true);
        EXPECT_FALSE(Enabled("mnuMakeExe")) << mode;
        window.SetMode(mode, false);
        EXPECT_TRUE(Enabled("mnuMakeExe")) << mode;
    }
}

class PlayerTest : public PlayerMakerTest {
protected:
    PlayerTest() {
        files.contents["C:\\tamrin\\Conf.txt"] = "max wait time = 77\r\n";
        files.contents["C:\\tamrin\\Options.txt"] = "recent = C:\\old.csv\r\n";
        files.contents[processes.own] = Player();
        before = files.contents;
    }
    std::map<std::string, std::string> before;
};

TEST_F(PlayerTest, PlaysAtOnceOnDefaultSettingsAndQuits) {
    bool in_tray = false;
    bool seen = false;
    for (std::uint32_t ms = 0; ms < 200; ms += 10) {
        clock.At(ms, [&] {
            in_tray |= form().tray_icon();
            seen |= form().Visible();
            EXPECT_FALSE(Enabled("mnuMakeExe"));
        });
    }
    EXPECT_EQ(window.Form_Load("-a C:\\other.csv -browser x"), StartUp::kDone);
    EXPECT_EQ(window.last_run(), RunEnd::kCompleted);
    EXPECT_EQ(web.calls.back(), "fire a onchange");
    EXPECT_TRUE(in_tray);
    EXPECT_FALSE(seen);
    EXPECT_TRUE(form().closed());
    EXPECT_EQ(globals.settings.max_wait_time, Settings().max_wait_time);
    EXPECT_TRUE(globals.options.recent_files.empty());
    EXPECT_EQ(files.contents, before);
}

TEST_F(PlayerTest, IsAnOrdinaryEditorWhenItIsToldSo) {
    EXPECT_EQ(window.Form_Load("x -no_auto_start"), StartUp::kDone);
    EXPECT_EQ(Records(), Lines{});
    EXPECT_EQ(web.calls, Lines{});
    EXPECT_EQ(globals.settings.max_wait_time, 77);
    window.Open("C:\\tamrin\\order.csv");
    Make(kPlayer);
    EXPECT_EQ(ReadPayload(files, kPlayer).carried, Carried::kScenario);
    EXPECT_EQ(files.contents[kPlayer].size(), files.contents[processes.own].size());
}

TEST_F(PlayerTest, SaysThatItIsDamagedAndPlaysNothing) {
    std::string& player = files.contents[processes.own];
    const std::string whole = player;
    const struct {
        std::function<void()> damage;
        const char* said;
    } rows[] = {
        {[&] { player.pop_back(); },
         "は途中で切れているため、再生できません。\r\nもう一度コピーするか、作り直してください。"},
        {[&] { player[player.size() - 30] = 'x'; },
         "のシナリオが壊れているため、再生できません。\r\nもう一度コピーするか、作り直してください。"},
        {[&] { player[player.size() - 12] = 2; },
         "のシナリオは新しい版の Tamrin のもので、再生できません。\r\n作り直してください。"},
    };
    for (const auto& row : rows) {
        player = whole;
        row.damage();
        before = files.contents;
        dialogs.answers = {Answer::kOk};
        Globals fresh;
        frmIeAuto damaged(fresh, {windows, clock, files, codec, processes, web, browsers});
        EXPECT_EQ(damaged.Form_Load(""), StartUp::kNoScenario);
        EXPECT_EQ(dialogs.shown.back(), "再生エラー|" + processes.own + "\r\n" + row.said);
        EXPECT_TRUE(damaged.closed());
        EXPECT_EQ(web.calls, Lines{});
        EXPECT_EQ(files.contents, before);
    }
}

}  // namespace
}  // namespace tamrin::test
