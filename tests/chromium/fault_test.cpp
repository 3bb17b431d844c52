#include <signal.h>

#include <filesystem>
#include <fstream>

#include "chromium/chromium_fixture.h"
#include "support/temporary_folder.h"

namespace tamrin::test {

std::vector<int> BrowserProcesses(const std::string& profile) {
    std::vector<int> ids;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        std::string line;
        std::getline(file, line);  // nothing when the process ends meanwhile
        if (profile.empty() || line.find(profile) == std::string::npos) continue;
        const bool is_first = line.find("--type=") == std::string::npos;
        ids.insert(is_first ? ids.begin() : ids.end(), std::stoi(entry.path().filename()));
    }
    return ids;
}

namespace {

TEST(BrowserStart, SaysWhyItFailsAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const std::string sleeper = folder.Write("sleeper", "#!/bin/sh\nexec sleep 100\n");
    Rig rig;
    rig.processes.AllowRunning(sleeper);
    class NoBrowsers : public QuietProcesses {
        std::string FindExecutable(const std::string& /*name*/) const override { return ""; }
    } empty;
    const std::pair<std::string, std::string> rows[] = {
        {"", "ブラウザーが見つかりません（chromium、google-chrome、"},
        {"/no/such", "指定されたブラウザーがありません。\r\n/no/such"},
        {"no-such", "指定されたブラウザーがありません。\r\nno-such"},
        {"/etc/passwd", "ブラウザーを起動できません。\r\n/etc/passwd"},
        {"/bin/false", "ブラウザーがすぐに終了しました。"},
        {sleeper, "ブラウザーが 1 秒以内に準備できませんでした。"},
        {sleeper, "ブラウザーの起動を中止しました。"},
    };
    for (const auto& [executable, says] : rows) {
        auto launcher = std::make_unique<ChromiumLauncher>(
            executable.empty() ? empty : rig.processes, rig.files, rig.system_clock,
            ChromiumSettings{.executable = [&] { return executable; },
                             .stop_requested = [&] { return says.ends_with("中止しました。"); },
                             .start_limit_ms = 300});
        std::string why;
        EXPECT_FALSE(launcher->Create(why));
        EXPECT_TRUE(why.starts_with(says)) << why;
        launcher.reset();
        EXPECT_TRUE(conformance::WaitUntil(
            rig.system_clock, [&] { return BrowserProcesses(rig.processes.profile).empty(); }));
        EXPECT_FALSE(std::filesystem::exists(rig.processes.profile)) << says;
    }
}

struct Faults : ChromiumTest {
    ~Faults() override { rig().on_wait = nullptr; }
};

constexpr const char* kHangs = "<p id=p>x</p><button id=b onclick='for (;;);'>hang</button>";

TEST_F(Faults, AKilledBrowserIsGoneAtOnceAndIsStartedAnew) {
    for (const bool in_a_call : {false, true}) {
        SetUp();
        const Document page = Open(kHangs);
        const Element button = Find("b");
        conformance::EventLog log(browser());
        const int id = BrowserProcesses(rig().processes.profile).at(0);
        rig().on_wait = [id] { return kill(id, SIGKILL) != 0; };
        if (!in_a_call) kill(id, SIGKILL);
        EXPECT_FALSE(button.click());
        rig().on_wait = nullptr;
        EXPECT_FALSE(browser().Alive() || browser().Busy() || browser().document());
        EXPECT_FALSE(browser().Navigate("about:blank") || Press("ENTER") || Picture());
        EXPECT_EQ(StillAnswers(page), 0);
        EXPECT_TRUE(log.lines.empty()) << "told outside DoEvents";
        ExpectLines(log, "OnQuit");
    }
}

TEST_F(Faults, AWindowWhosePageCrashesIsGoneAlone) {
    const auto other = NewWindow();
    const Document page = Open(kHangs);
    conformance::EventLog log(browser());
    EXPECT_TRUE(browser().Navigate("chrome://crash"));
    EXPECT_TRUE(Wait([&] { return log.Has("OnQuit"); }));
    EXPECT_FALSE(browser().Alive() || browser().Busy() || browser().Navigate("about:blank"));
    EXPECT_TRUE(page.getElementsByTagName("*").empty() && other->Alive());
}

TEST_F(Faults, APageThatHangsAnswersEmptyUntilItIsLeftOrRunsOn) {
    const std::string runs_on =
        "<p id=p>y</p><button id=b onclick='t = Date.now(); while (Date.now() - t < 500);'>b";
    const std::pair<std::string, bool> rows[] = {{kHangs, true}, {kHangs, false}, {runs_on, false}};
    for (const auto& [page, stopped] : rows) {
        SCOPED_TRACE(page);
        const Document document = Open(page);
        const Element button = Find("b");
        conformance::EventLog log(browser());
        // The user stops the call, or it takes too long.
        rig().on_wait = [&] {
            if (!stopped) rig().system_clock.Jump(30000);
            return stopped;
        };
        EXPECT_FALSE(button.click());
        rig().on_wait = nullptr;
        const auto trips = rig().RoundTrips();
        EXPECT_TRUE(document.getElementsByTagName("*").empty() && !document.hasFocus());
        EXPECT_EQ(rig().RoundTrips(), trips) << "waited again";
        EXPECT_TRUE(browser().Alive() && browser().Busy());
        clock().DoEvents();
        EXPECT_EQ(log.Has("NotResponding"), !stopped);
        if (page == kHangs) Open("<p id=p>y</p>");
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(Find("p").innerText(), "y");
    }
}

}  // namespace
}  // namespace tamrin::test
