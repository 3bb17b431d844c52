#include "platform/chromium/chromium_windows.h"

#include <signal.h>

#include "chromium/chromium_fixture.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

TEST(Endpoints, AreReadFromWhatUsersAndBrowsersWrite) {
    const std::pair<const char*, const char*> rows[] = {
        {" 9222\r\n", "9222"},
        {"localhost:9222", "9222"},
        {"http://127.0.0.1:9222/", "9222"},
        {"ws://127.0.0.1:9222/devtools/browser/a-b", "9222/devtools/browser/a-b"},
        {"10.0.0.1:9222", ""},
        {"127.0.0.1:99999", ""},
        {":0", ""},
    };
    for (const auto& [text, expected] : rows) {
        const auto endpoint = ReadDebugAddress(text);
        EXPECT_EQ(endpoint ? std::to_string(endpoint->port) + endpoint->path : "", expected)
            << text;
    }
    for (const char* incomplete : {"", "12", "12\n", "x\n/y", "0\n/y", "12\ny"}) {
        EXPECT_FALSE(ReadActivePort(incomplete)) << incomplete;
    }
}

// A user whose browsers keep their profiles in one folder, and can be reached by a port.
struct User : QuietProcesses {
    explicit User(std::string at) : folder(std::move(at)) {}
    std::string Environment(const std::string& name) const override {
        if (name == "XDG_CONFIG_HOME") return folder;
        if (name == "TAMRIN_DEBUGGING_PORT") return "1";
        return name == "PATH" ? QuietProcesses::Environment(name) : std::string();
    }
    const std::string folder;
};

struct Windows : testing::Test {
    // The browser is the user's and outlives the program; here it ends with the test.
    ~Windows() override {
        for (const int id : BrowserProcesses(profile_)) kill(id, SIGKILL);
        conformance::WaitUntil(rig_.system_clock,
                               [&] { return BrowserProcesses(profile_).empty(); });
    }

    // Opens a window of the user's browser and waits for its page.
    void Open() {
        std::string why;
        window_ = own_->Open(server_.Url("/"), why);
        ASSERT_TRUE(window_) << why;
        EXPECT_TRUE(Wait(*own_, [&] { return bool(window_->document().Named("a").by_id); }));
    }
    bool Wait(ChromiumWindows& windows, const std::function<bool()>& condition) {
        return conformance::WaitUntil(rig_.system_clock, [&] {
            windows.DeliverEvents();
            return condition();
        });
    }

    Rig rig_;
    TemporaryFolder folder_;
    std::string profile_ = folder_.At("chromium");
    User user_{folder_.path()};
    User stranger_{folder_.At("none")};
    WebServer server_{[](const WebRequest&) -> WebReply { return {.body = "<input id=a>"}; }};
    std::unique_ptr<ChromiumWindows> own_ =
        std::make_unique<ChromiumWindows>(stranger_, rig_.files, rig_.system_clock,
                                          ChromiumWindowsSettings{.profile_folder = profile_});
    std::shared_ptr<Browser> window_;
};

TEST_F(Windows, AreOpenedFoundAgainAndOutliveTheProgram) {
    // A browser that was killed leaves its file behind; the port is nobody's, or another program's.
    for (const std::string name : {"google-chrome", "microsoft-edge"}) {
        const std::string port = name == "google-chrome" ? "1" : std::to_string(server_.port());
        rig_.files.MakeFolder(folder_.At(name));
        folder_.Write(name + "/DevToolsActivePort", port + "\n/devtools/browser/x");
    }
    std::string address;
    const ChromiumWindowsSettings elsewhere{.debug_address = [&] { return address; },
                                            .profile_folder = folder_.At("none")};
    ChromiumWindows found(user_, rig_.files, rig_.system_clock, elsewhere);
    for (int look = 0; look < 10; ++look) {
        rig_.system_clock.Jump(1000);
        found.DeliverEvents();
        EXPECT_TRUE(found.Visible().empty() && !found.Focused());
    }
    EXPECT_EQ(found.RoundTrips(), 0U) << "nothing waits for them";

    Open();
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Focused() == window_; }));
    std::string why;
    const auto second = own_->Open("", why);
    ASSERT_TRUE(second) << why;
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Visible().size() == 2; }));
    second->Quit();
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Visible() == std::vector{window_}; }));
    own_.reset();

    // By the port alone, by what the browser has written, and as the window of a run.
    const auto running = ReadActivePort(*rig_.files.Read(profile_ + "/DevToolsActivePort"));
    address = "localhost:" + std::to_string(running->port);
    ChromiumWindows by_port(stranger_, rig_.files, rig_.system_clock, elsewhere);
    const auto run = rig_.chromium.Create(why);
    ASSERT_TRUE(run) << why;
    run->Navigate(server_.Url("/"));
    ChromiumWindows played(
        stranger_, rig_.files, rig_.system_clock,
        {.profile_folder = folder_.At("none"), .played = &rig_.chromium.browser()});
    for (ChromiumWindows* windows : {&found, &by_port, &played}) {
        // The button for recording brings the window to the front.
        ASSERT_TRUE(Wait(*windows, [&] { return !windows->Visible().empty(); }));
        windows->Visible().front()->SetForeground();
        std::shared_ptr<Browser> same;
        ASSERT_TRUE(Wait(*windows, [&] { return (same = windows->Focused()) != nullptr; }));
        EXPECT_EQ(windows->Visible(), std::vector{same});
        EXPECT_TRUE(Wait(*windows, [&] { return same->document().url() == server_.Url("/"); }));
    }
}

}  // namespace
}  // namespace tamrin::test
