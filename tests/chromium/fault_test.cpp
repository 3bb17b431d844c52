#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "conformance/quiet_processes.h"
#include "conformance/suite.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/system_clock.h"

namespace tamrin::test {
namespace {

using conformance::QuietProcesses;

// A browser of its own, for what would harm the shared one.
class OwnBrowser : public ::testing::Test {
protected:
    OwnBrowser() {
        settings_.stop_requested = [this] { return on_wait_ && on_wait_(); };
        clock_.AddSource([this] {
            if (launcher_) launcher_->DeliverEvents();
        });
    }

    std::shared_ptr<Browser> Create() {
        if (!launcher_) {
            launcher_ = std::make_unique<ChromiumLauncher>(processes_, files_, clock_, settings_);
        }
        return launcher_->Create(why_);
    }

    bool Wait(const std::function<bool()>& condition) {
        return conformance::WaitUntil(clock_, condition);
    }

    // Shows a page without a server.
    void Open(Browser& browser, const std::string& html) {
        ASSERT_TRUE(browser.Navigate("data:text/html," + html));
        ASSERT_TRUE(Wait([&] { return !browser.Busy(); }));
    }

    static int IdOf(const std::filesystem::path& process) {
        return std::atoi(process.filename().c_str());
    }

    // The processes whose command line names the profile that `launcher_` made, by id.
    std::map<int, std::string> Running() const {
        std::map<int, std::string> found;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
            const int id = IdOf(entry.path());
            if (id == 0) continue;
            std::ifstream file(entry.path() / "cmdline", std::ios::binary);
            std::string line{std::istreambuf_iterator<char>(file), {}};
            if (line.find(processes_.profile) != std::string::npos) found[id] = std::move(line);
        }
        return found;
    }

    // The browser's first process.
    int BrowserId() const {
        for (const auto& [id, line] : Running()) {
            if (line.find("--type=") == std::string::npos) return id;
        }
        return 0;
    }

    class Remembering : public QuietProcesses {
    public:
        std::string MakeTemporaryFolder() override {
            profile = QuietProcesses::MakeTemporaryFolder();
            return profile;
        }
        std::string profile;
    };

    class Quits : public conformance::EventLog {
    public:
        void NotResponding() override { ++not_responding; }
        void OnQuit() override { ++quit; }
        int quit = 0;
        int not_responding = 0;
    };

    Remembering processes_;
    PosixFiles files_;
    SystemClock clock_;
    ChromiumSettings settings_;
    // Asked now and then while a call waits: whether it is to stop.
    std::function<bool()> on_wait_;
    std::string why_;
    std::unique_ptr<ChromiumLauncher> launcher_;
};

TEST_F(OwnBrowser, ThatCannotBeStartedIsSaidSo) {
    settings_.start_limit_ms = 300;
    const std::filesystem::path sleeper =
        std::filesystem::temp_directory_path() / ("tamrin-sleeper-" + std::to_string(getpid()));
    std::ofstream(sleeper) << "#!/bin/sh\nexec sleep 100\n";
    std::filesystem::permissions(sleeper, std::filesystem::perms::owner_all);
    const struct {
        std::string executable;
        const char* says;
    } rows[] = {
        {"/no/such/browser", "指定されたブラウザがありません。\r\n/no/such/browser"},
        {"no-such-browser", "指定されたブラウザがありません。\r\nno-such-browser"},
        {"/etc/passwd", "ブラウザを起動できません。\r\n/etc/passwd"},
        {"/bin/false", "ブラウザがすぐに終了しました。"},
        {sleeper, "ブラウザが 1 秒以内に準備できませんでした。"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.executable);
        settings_.executable = [&] { return row.executable; };
        launcher_.reset();
        EXPECT_FALSE(Create());
        EXPECT_TRUE(why_.starts_with(row.says)) << why_;
        EXPECT_FALSE(std::filesystem::exists(processes_.profile));
    }

    std::filesystem::remove(sleeper);

    class Nowhere : public QuietProcesses {
        std::string FindExecutable(const std::string&) const override { return ""; }
    } nowhere;
    ChromiumLauncher launcher(nowhere, files_, clock_, {});
    EXPECT_FALSE(launcher.Create(why_));
    EXPECT_TRUE(why_.starts_with("ブラウザが見つかりません")) << why_;
}

TEST_F(OwnBrowser, LeavesNothingBehind) {
    const auto browser = Create();
    ASSERT_TRUE(browser) << why_;
    EXPECT_NE(BrowserId(), 0);
    launcher_.reset();
    EXPECT_TRUE(Wait([&] { return Running().empty(); }));
    EXPECT_FALSE(std::filesystem::exists(processes_.profile));
    EXPECT_FALSE(browser->Alive());
    EXPECT_FALSE(browser->Navigate("about:blank"));
}

TEST_F(OwnBrowser, KilledIsGoneAtOnceAndCanBeMadeAnew) {
    for (const bool in_a_call : {false, true}) {
        SCOPED_TRACE(in_a_call);
        const auto browser = Create();
        ASSERT_TRUE(browser) << why_;
        Quits quits;
        const auto connection = browser->Connect(quits);
        Open(*browser, "<p id=p>x</p><button id=b onclick='for (;;);'>hang</button>");
        const Element paragraph = browser->document().Named("p").by_id;
        const Element button = browser->document().Named("b").by_id;
        const int id = BrowserId();
        ASSERT_NE(id, 0);
        on_wait_ = [id] { return kill(id, SIGKILL) != 0; };
        if (!in_a_call) kill(id, SIGKILL);
        EXPECT_FALSE(button.click());
        on_wait_ = nullptr;
        EXPECT_FALSE(browser->Alive());
        EXPECT_FALSE(browser->Busy());
        EXPECT_FALSE(browser->document());
        EXPECT_EQ(paragraph.innerText(), "");
        EXPECT_FALSE(browser->Navigate("about:blank"));
        EXPECT_FALSE(launcher_->input().SendKeys({{.text = "x", .name = ""}}));
        EXPECT_FALSE(launcher_->Picture());
        EXPECT_EQ(quits.quit, 0) << "told outside DoEvents";
        clock_.DoEvents();
        clock_.DoEvents();
        EXPECT_EQ(quits.quit, 1);
    }
    const auto next = Create();
    ASSERT_TRUE(next) << why_;
    Open(*next, "<p id=p>x</p>");
    EXPECT_EQ(next->document().Named("p").by_id.innerText(), "x");
}

TEST_F(OwnBrowser, WhosePageCrashesOrIsClosedIsGone) {
    const auto keeper = Create();
    ASSERT_TRUE(keeper) << why_;
    for (const bool crash : {true, false}) {
        SCOPED_TRACE(crash);
        const auto browser = Create();
        ASSERT_TRUE(browser) << why_;
        Quits quits;
        const auto connection = browser->Connect(quits);
        Open(*browser, "<p id=p>x</p>");
        const Document page = browser->document();
        if (crash) {
            EXPECT_TRUE(browser->Navigate("chrome://crash"));
        } else {
            browser->Quit();
        }
        EXPECT_TRUE(Wait([&] { return quits.quit > 0; }));
        EXPECT_FALSE(browser->Alive());
        EXPECT_FALSE(browser->Busy());
        EXPECT_TRUE(page.getElementsByTagName("*").empty());
        EXPECT_FALSE(browser->Navigate("about:blank"));
        browser->Quit();
        clock_.DoEvents();
        EXPECT_EQ(quits.quit, 1);
        EXPECT_TRUE(keeper->Alive());
    }
    keeper->Quit();
    EXPECT_TRUE(Wait([&] { return !keeper->Alive(); }));
    EXPECT_TRUE(Create()) << why_;
}

TEST_F(OwnBrowser, WhosePageHangsAnswersEmptyAndGoesElsewhereOrComesToItself) {
    settings_.answer_limit_ms = 1000;
    const auto browser = Create();
    ASSERT_TRUE(browser) << why_;
    for (const bool stopped : {true, false}) {
        SCOPED_TRACE(stopped);
        Quits quits;
        const auto connection = browser->Connect(quits);
        Open(*browser, "<p id=p>x</p><button id=b onclick='for (;;);'>hang</button>");
        const Document page = browser->document();
        on_wait_ = [stopped] { return stopped; };
        EXPECT_FALSE(page.Named("b").by_id.click());
        on_wait_ = nullptr;
        const auto trips = launcher_->RoundTrips();
        EXPECT_TRUE(page.getElementsByTagName("*").empty());
        EXPECT_FALSE(page.hasFocus());
        EXPECT_EQ(launcher_->RoundTrips(), trips) << "waited again";
        EXPECT_TRUE(browser->Alive());
        EXPECT_TRUE(browser->Busy());
        clock_.DoEvents();
        EXPECT_EQ(quits.not_responding, stopped ? 0 : 1);

        Open(*browser, "<p id=p>y</p>");
        EXPECT_EQ(browser->document().Named("p").by_id.innerText(), "y");
    }
    Open(*browser,
         "<button id=b onclick='t = Date.now(); while (Date.now() - t < 1500);'>hang</button>");
    EXPECT_FALSE(browser->document().Named("b").by_id.click());
    EXPECT_TRUE(browser->Busy());
    EXPECT_TRUE(Wait([&] { return !browser->Busy(); }));
    EXPECT_EQ(browser->document().Named("b").by_id.innerText(), "hang");
}

}  // namespace
}  // namespace tamrin::test
