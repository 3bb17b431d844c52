#include <signal.h>

#include <filesystem>

#include "chromium/chromium_fixture.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

TEST(BrowserStart, SaysWhyItFailsAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const std::string sleeper = folder.At("sleeper");
    RememberingProcesses processes;
    PosixFiles files;
    JumpingClock clock;
    ASSERT_TRUE(files.Replace(sleeper, "#!/bin/sh\nexec sleep 100\n"));
    processes.AllowRunning(sleeper);
    class NoBrowsers : public RememberingProcesses {
        std::string FindExecutable(const std::string& /*name*/) const override { return ""; }
    } empty;
    const struct {
        Processes& system;
        std::string executable;
        bool stop;
        std::string says;
    } rows[] = {
        {empty, "", false, "ブラウザが見つかりません（chromium、google-chrome、"},
        {processes, "/no/such", false, "指定されたブラウザがありません。\r\n/no/such"},
        {processes, "no-such", false, "指定されたブラウザがありません。\r\nno-such"},
        {processes, "/etc/passwd", false, "ブラウザを起動できません。\r\n/etc/passwd"},
        {processes, "/bin/false", false, "ブラウザがすぐに終了しました。"},
        {processes, sleeper, false, "ブラウザが 1 秒以内に準備できませんでした。"},
        {processes, sleeper, true, "ブラウザの起動を中止しました。"},
        {processes, "", false, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.executable + " " + row.says);
        const bool starts = row.says.empty();
        auto launcher = std::make_unique<ChromiumLauncher>(
            row.system, files, clock,
            ChromiumSettings{.executable = [&] { return row.executable; },
                             .stop_requested = [&] { return row.stop; },
                             .start_limit_ms = starts ? 30000 : 300});
        std::string why;
        const auto window = launcher->Create(why);
        EXPECT_EQ(window != nullptr, starts);
        EXPECT_TRUE(why.starts_with(row.says)) << why;
        launcher.reset();
        EXPECT_TRUE(conformance::WaitUntil(
            clock, [&] { return BrowserProcesses(processes.profile).empty(); }));
        EXPECT_FALSE(std::filesystem::exists(processes.profile));
        EXPECT_FALSE(window && (window->Alive() || window->Navigate("about:blank")));
    }
}

// Each test harms a window of its own.
class Faults : public ChromiumTest, public conformance::EventLog {
protected:
    ~Faults() override { rig().on_wait = nullptr; }

    void NotResponding() override { lines.emplace_back("NotResponding"); }

    void Show(std::string_view body) {
        if (!window_) {
            window_ = NewWindow();
            ASSERT_TRUE(window_);
            connection_ = window_->Connect(*this);
        }
        ASSERT_TRUE(window_->Navigate(Url(Serve(body))));
        ASSERT_TRUE(WaitComplete(*window_));
        clock().DoEvents();
        lines.clear();
    }
    Element ById(std::string_view id) { return window_->document().Named(id).by_id; }

    using Lines = std::vector<std::string>;
    std::shared_ptr<Browser> window_;
    std::unique_ptr<Connection> connection_;
};

constexpr const char* kHangs = "<p id=p>x</p><button id=b onclick='for (;;);'>hang</button>";

TEST_F(Faults, AKilledBrowserIsGoneAtOnceAndIsStartedAnew) {
    for (const bool in_a_call : {false, true}) {
        SCOPED_TRACE(in_a_call);
        connection_.reset();
        window_.reset();
        Show(kHangs);
        const Element paragraph = ById("p");
        const Element button = ById("b");
        const int id = BrowserProcesses(rig().processes.profile).at(0);
        rig().on_wait = [id] { return kill(id, SIGKILL) != 0; };
        if (!in_a_call) kill(id, SIGKILL);
        EXPECT_FALSE(button.click());
        rig().on_wait = nullptr;
        EXPECT_FALSE(window_->Alive() || window_->Busy() || window_->document());
        EXPECT_EQ(paragraph.innerText(), "");
        EXPECT_FALSE(window_->Navigate("about:blank") || Press("ENTER") || Picture());
        EXPECT_EQ(lines, Lines()) << "told outside DoEvents";
        clock().DoEvents();
        clock().DoEvents();
        EXPECT_EQ(lines, Lines{"OnQuit"});
    }
}

TEST_F(Faults, AWindowWhosePageCrashesIsGoneAlone) {
    Show(kHangs);
    const Document page = window_->document();
    EXPECT_TRUE(window_->Navigate("chrome://crash"));
    EXPECT_TRUE(Wait([&] { return Has("OnQuit"); }));
    EXPECT_FALSE(window_->Alive() || window_->Busy() || window_->Navigate("about:blank"));
    EXPECT_TRUE(page.getElementsByTagName("*").empty());
    EXPECT_TRUE(browser().Alive());
}

TEST_F(Faults, APageThatHangsAnswersEmptyUntilItIsLeftOrRunsOn) {
    const struct {
        std::string_view page;
        bool stopped;  // by the user; else the call takes too long
        Lines told;
    } rows[] = {
        {kHangs, true, {}},
        {kHangs, false, {"NotResponding"}},
        {"<p id=p>y</p><button id=b onclick='t = Date.now(); while (Date.now() - t < 500);'>b",
         false,
         {"NotResponding"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.page);
        Show(row.page);
        const Document page = window_->document();
        const Element button = ById("b");
        rig().on_wait = [&] {
            if (!row.stopped) rig().system_clock.Jump(30000);
            return row.stopped;
        };
        EXPECT_FALSE(button.click());
        rig().on_wait = nullptr;
        const auto trips = rig().RoundTrips();
        EXPECT_TRUE(page.getElementsByTagName("*").empty() && !page.hasFocus());
        EXPECT_EQ(rig().RoundTrips(), trips) << "waited again";
        EXPECT_TRUE(window_->Alive() && window_->Busy());
        clock().DoEvents();
        EXPECT_EQ(lines, row.told);
        if (row.page == kHangs) Show("<p id=p>y</p>");
        EXPECT_TRUE(WaitComplete(*window_));
        EXPECT_EQ(ById("p").innerText(), "y");
    }
}

}  // namespace
}  // namespace tamrin::test
