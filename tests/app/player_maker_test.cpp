#include "app/player_maker.h"

#include "app/main_window_rig.h"
#include "scenario/player_payload.h"
#include "scenario/scenario_text.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

const std::string kPlayer = "D:\\配布\\注文.exe";

class PlayerMakerTest : public MainWindowTest {
protected:
    PlayerMakerTest() {
        program = SampleProgram(ProgramKind::kWindows64);
        files.contents["D:\\配布\\readme.txt"] = "";
        window.Form_Load("");
        EXPECT_FALSE(Enabled("mnuMakeExe"));
        window.Open("C:\\tamrin\\order.csv");
        EXPECT_TRUE(Enabled("mnuMakeExe"));
    }
    // Chooses the menu entry and this file.
    void Make(const std::string& path) {
        dialogs.paths = {path};
        form().Click("mnuMakeExe");
    }
    std::string& program = files.contents[processes.own];
};

TEST_F(PlayerMakerTest, WritesAProgramThatPlaysTheList) {
    Make(kPlayer);
    EXPECT_EQ(dialogs.shown.back(), "実行形式で保存|実行ファイル(*.exe)|C:\\tamrin\\order.exe");
    EXPECT_EQ(Find("txtStatus").Text(), "実行形式で保存しました：" + kPlayer);
    EXPECT_EQ(processes.runnable, std::set<std::string>{kPlayer});
    const Payload payload = ReadPayload(files, kPlayer);
    EXPECT_EQ(ReadScenarioText(payload.scenario, codec), Records());
    EXPECT_TRUE(payload.scenario.starts_with("CIPHER\r\n"));
    // A player that runs as the editor makes a player of the same size.
    program = files.contents[kPlayer];
    Make("D:\\配布\\2.exe");
    EXPECT_EQ(files.contents["D:\\配布\\2.exe"].size(), program.size());
}

TEST_F(PlayerMakerTest, ProposesTheNameOfTheScenario) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "C:\\tamrin\\無題.exe"},
        {"stream", "C:\\tamrin\\無題.exe"},
        {"C:\\a.b\\注文.2.csv", "C:\\a.b\\注文.2.exe"},
        {"C:\\a.b\\order", "C:\\a.b\\order.exe"},
    };
    for (const auto& [file, proposed] : rows) {
        globals.current_file = file;
        Make("");
        EXPECT_TRUE(dialogs.shown.back().ends_with(std::string("|") + proposed)) << file;
    }
}

TEST_F(PlayerMakerTest, SaysWhyItCannot) {
    const std::string whole = program;
    const std::string own = processes.own;
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[&] { processes.running = {kPlayer}; }, kPlayer + "\r\nは実行中か使用中のため、"},
        {[&] { files.locked = {kPlayer}; }, kPlayer + "\r\nに保存できません。"},
        {[&] { program = MakePlayer(whole, "x")->substr(0, whole.size() + 20); },
         own + "\r\nは壊れ"},
        {[&] { processes.own = "C:\\gone.exe"; }, "C:\\gone.exe\r\nのファイルを読み込めません。"},
        {[&] { list().SetLines({"click\t,id=ok"}); }, "最初に開くページ（url の行）がないため"},
    };
    for (const auto& [spoil, said] : rows) {
        spoil();
        files.contents[kPlayer] = "old";
        dialogs.answers = {kOk};
        Make(kPlayer);
        EXPECT_TRUE(dialogs.shown.back().starts_with("保存エラー|" + said)) << said;
        EXPECT_EQ(files.contents[kPlayer], "old");
        program = whole;
        processes.own = own;
        files.locked.clear();
        processes.running.clear();
    }
    EXPECT_EQ(Find("txtStatus").Text(), "");
}

}  // namespace
}  // namespace tamrin::test
