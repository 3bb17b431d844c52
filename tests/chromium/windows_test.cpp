#include "platform/chromium/chromium_windows.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "conformance/quiet_processes.h"
#include "conformance/suite.h"
#include "platform/posix/files.h"
#include "platform/posix/system_clock.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

TEST(ReadDebugAddress, TakesWhatLeadsToThisComputer) {
    const auto address = [](const char* text) {
        const auto endpoint = ReadDebugAddress(text);
        return endpoint ? std::to_string(endpoint->port) + endpoint->path : "-";
    };
    EXPECT_EQ(address(" 9222\r\n"), "9222");
    EXPECT_EQ(address("localhost:9222"), "9222");
    EXPECT_EQ(address("http://127.0.0.1:9222/"), "9222");
    EXPECT_EQ(address("ws://127.0.0.1:9222/devtools/browser/a-b"), "9222/devtools/browser/a-b");
    for (const char* text : {"", "x", "localhost", "10.0.0.1:9222", "127.0.0.1:99999", ":0"}) {
        EXPECT_EQ(address(text), "-") << text;
    }
}

TEST(ReadActivePort, TakesOnlyWhatIsAllWritten) {
    EXPECT_EQ(ReadActivePort("12\n/devtools/browser/x\n"), (Endpoint{12, "/devtools/browser/x"}));
    for (const char* text : {"", "12", "12\n", "x\n/y", "0\n/y", "12\ny"}) {
        EXPECT_FALSE(ReadActivePort(text)) << text;
    }
}

// A browser of the user's own: it lives until the test ends it.
class Windows : public ::testing::Test {
protected:
    ~Windows() override {
        // The profile names its browser as "computer-process".
        std::array<char, 200> name{};
        if (readlink((profile_ + "/SingletonLock").c_str(), name.data(), name.size() - 1) > 0) {
            const std::string lock = name.data();
            kill(std::stoi(lock.substr(lock.rfind('-') + 1)), SIGKILL);
        }
        clock_.Sleep(200);
    }

    ChromiumWindowsSettings Settings() const {
        return {.debug_address = [this] { return address_; }, .profile_folder = profile_};
    }
    bool Wait(ChromiumWindows& windows, const std::function<bool()>& condition) {
        return conformance::WaitUntil(clock_, [&] {
            windows.DeliverEvents();
            return condition();
        });
    }

    conformance::QuietProcesses processes_;
    PosixFiles files_;
    SystemClock clock_;
    TemporaryFolder folder_;
    std::string profile_ = folder_.path() + "/profile";
    std::string address_;
    WebServer server_{[](const WebRequest&) { return WebReply{.body = "<input id=a autofocus>"}; }};
};

TEST_F(Windows, AreOpenedFoundAgainAndOutliveTheProgram) {
    std::string why;
    {
        ChromiumWindows windows(processes_, files_, clock_, Settings());
        EXPECT_TRUE(windows.Visible().empty());
        EXPECT_FALSE(windows.Focused());
        const auto window = windows.Open(server_.Url("/"), why);
        ASSERT_TRUE(window) << why;
        EXPECT_TRUE(
            Wait(windows, [&] { return !window->Busy() && window->document().Named("a").by_id; }));
        EXPECT_EQ(window->document().url(), server_.Url("/"));
        EXPECT_NE(window->Handle(), 0U);
        EXPECT_GT(window->State().place.width, 100);
        EXPECT_TRUE(Wait(windows, [&] { return windows.Visible().size() == 1; }));
        EXPECT_EQ(windows.Visible().front(), window);
        EXPECT_TRUE(Wait(windows, [&] { return windows.Focused() == window; }));
        const auto second = windows.Open("", why);
        ASSERT_TRUE(second) << why;
        EXPECT_NE(second, window);
        EXPECT_TRUE(Wait(windows, [&] { return windows.Visible().size() == 2; }));
        second->Quit();
        EXPECT_TRUE(Wait(windows, [&] { return windows.Visible().size() == 1; }));
        EXPECT_FALSE(second->Alive());
    }
    ChromiumWindows again(processes_, files_, clock_, Settings());
    EXPECT_TRUE(Wait(again, [&] { return again.Visible().size() == 1; }));
    EXPECT_EQ(again.Visible().front()->document().url(), server_.Url("/"));

    // By the port alone, as a user knows it.
    address_ = files_.Read(profile_ + "/DevToolsActivePort").value_or("");
    address_ = "localhost:" + address_.substr(0, address_.find('\n'));
    ChromiumWindowsSettings elsewhere = Settings();
    elsewhere.profile_folder = folder_.path() + "/none";
    ChromiumWindows by_address(processes_, files_, clock_, elsewhere);
    EXPECT_TRUE(Wait(by_address, [&] { return by_address.Visible().size() == 1; }));
    EXPECT_EQ(by_address.Visible().front()->document().url(), server_.Url("/"));
}

// A user whose browsers keep their profiles in a folder.
class WithProfiles : public conformance::QuietProcesses {
public:
    explicit WithProfiles(std::string folder) : folder_(std::move(folder)) {}
    std::string Environment(const std::string& name) const override {
        if (name == "XDG_CONFIG_HOME") return folder_;
        return name == "PATH" ? QuietProcesses::Environment(name) : std::string();
    }

private:
    std::string folder_;
};

TEST_F(Windows, AreFoundByWhatTheirBrowserHasWrittenIntoItsProfile) {
    WithProfiles user(folder_.path());
    // A browser that was killed leaves its file behind; the port is nobody's, or another program's.
    const std::string port = server_.Url("").substr(server_.Url("").rfind(':') + 1);
    const struct {
        const char* folder;
        std::string text;
    } stale[] = {
        {"google-chrome", "1\n/devtools/browser/x"},
        {"microsoft-edge", port + "\n/devtools/browser/x"},
    };
    for (const auto& row : stale) {
        files_.MakeFolder(folder_.At(row.folder));
        ASSERT_TRUE(files_.Replace(folder_.At(row.folder) + "/DevToolsActivePort", row.text));
    }
    ChromiumWindowsSettings elsewhere = Settings();
    elsewhere.profile_folder = folder_.At("none");
    ChromiumWindows found(user, files_, clock_, elsewhere);
    const std::uint32_t start = clock_.TickCount();
    Wait(found, [&] {
        EXPECT_TRUE(found.Visible().empty());
        EXPECT_FALSE(found.Focused());
        return clock_.TickCount() - start > 2500;
    });
    EXPECT_EQ(found.RoundTrips(), 0U) << "nothing waits for them";

    profile_ = folder_.At("chromium");
    std::string why;
    ChromiumWindows own(processes_, files_, clock_, Settings());
    const auto window = own.Open(server_.Url("/"), why);
    ASSERT_TRUE(window) << why;
    // A window that was hidden at first is asked again when the focused one is looked for.
    std::shared_ptr<Browser> same;
    ASSERT_TRUE(Wait(found, [&] {
        own.DeliverEvents();
        same = found.Focused();
        return same != nullptr;
    }));
    EXPECT_EQ(found.Visible(), std::vector{same});
    EXPECT_TRUE(Wait(found, [&] { return same->document().url() == server_.Url("/"); }));
}

// Follows a window from page to page, and writes down where the focus goes.
class FocusLog : public BrowserEvents, public DocumentEvents {
public:
    explicit FocusLog(Browser& browser) : browser_(browser), window_(browser.Connect(*this)) {
        FocusLog::NavigateComplete2();
    }
    void NavigateComplete2() override {
        document_ = browser_.document();
        page_ = document_.Connect(*this);
    }
    void onfocusin() override { Note("focus "); }
    void onbeforedeactivate() override { Note("leave "); }
    void onclick() override {}
    void onkeypress(int /*key_code*/) override {}
    void onsubmit() override {}
    void DocumentComplete(bool /*top*/) override {}
    void BeforeNavigate2(const std::string& /*url*/) override {}
    void NavigateError(const std::string& /*url*/, const std::string& /*reason*/) override {}
    void OnQuit() override {}

    std::vector<std::string> told;

private:
    void Note(const std::string& what) { told.push_back(what + document_.activeElement().id()); }

    Browser& browser_;
    Document document_;
    std::unique_ptr<Connection> window_;
    std::unique_ptr<Connection> page_;
};

// A page that the browser has kept comes back as it was, with what listens in it.
TEST_F(Windows, TellOfPagesThatTheBrowserHasKept) {
    const WebServer server([](const WebRequest& request) {
        const std::string fields =
            request.path == "/" ? "<input id=a><input id=b>" : "<input id=c>";
        return WebReply{.body = fields +
                                "<p id=log><script>onpageshow = (e) => {"
                                " log.textContent = e.persisted ? 'kept' : 'new'; }"
                                "</script>",
                        .cache_control = "max-age=60"};
    });
    std::string why;
    ChromiumWindows windows(processes_, files_, clock_, Settings());
    const auto window = windows.Open(server.Url("/"), why);
    ASSERT_TRUE(window) << why;
    ASSERT_TRUE(
        Wait(windows, [&] { return !window->Busy() && window->document().Named("a").by_id; }));
    FocusLog log(*window);
    const struct {
        const char* script;
        const char* shows;  // the page that is shown then, by an element's id, and what it says
        const char* says;
        std::vector<std::string> told;
    } steps[] = {
        {"a.focus()", "a", "new", {"focus a"}}, {"b.focus()", "a", "new", {"leave a", "focus b"}},
        {"location = '/next'", "c", "new", {}}, {"c.focus()", "c", "new", {"focus c"}},
        {"history.back()", "a", "kept", {}},    {"a.focus()", "a", "kept", {"leave b", "focus a"}},
        {"history.forward()", "c", "kept", {}}, {"c.blur()", "c", "kept", {"leave c"}},
        {"history.back()", "a", "kept", {}},    {"b.focus()", "a", "kept", {"leave a", "focus b"}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.script);
        window->Navigate(std::string("javascript:") + step.script);
        EXPECT_TRUE(Wait(windows, [&] {
            const Document page = window->document();
            return page.Named(step.shows).by_id &&
                   page.Named("log").by_id.innerText() == step.says &&
                   log.told.size() >= step.told.size();
        }));
        const std::uint32_t start = clock_.TickCount();
        Wait(windows, [&] { return clock_.TickCount() - start > 100; });  // for what must not come
        EXPECT_EQ(std::exchange(log.told, {}), step.told);
    }
}

}  // namespace
}  // namespace tamrin::test
