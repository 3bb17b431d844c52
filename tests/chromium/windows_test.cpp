#include "platform/chromium/chromium_windows.h"

#include <signal.h>

#include <string>
#include <utility>
#include <vector>

#include "chromium/chromium_fixture.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

TEST(Endpoints, AreReadFromWhatUsersAndBrowsersWrite) {
    const auto shown = [](const std::optional<Endpoint>& endpoint) {
        return endpoint ? std::to_string(endpoint->port) + endpoint->path : "-";
    };
    const std::pair<const char*, const char*> addresses[] = {
        {" 9222\r\n", "9222"},
        {"localhost:9222", "9222"},
        {"http://127.0.0.1:9222/", "9222"},
        {"ws://127.0.0.1:9222/devtools/browser/a-b", "9222/devtools/browser/a-b"},
        {"x", "-"},
        {"localhost", "-"},
        {"10.0.0.1:9222", "-"},
        {"127.0.0.1:99999", "-"},
        {":0", "-"},
    };
    for (const auto& [text, endpoint] : addresses) {
        EXPECT_EQ(shown(ReadDebugAddress(text)), endpoint) << text;
    }
    EXPECT_EQ(shown(ReadActivePort("12\n/devtools/browser/x\n")), "12/devtools/browser/x");
    for (const char* incomplete : {"", "12", "12\n", "x\n/y", "0\n/y", "12\ny"}) {
        EXPECT_EQ(shown(ReadActivePort(incomplete)), "-") << incomplete;
    }
}

// A user whose browsers keep their profiles in one folder.
class User : public conformance::QuietProcesses {
public:
    explicit User(std::string folder) : folder_(std::move(folder)) {}
    std::string Environment(const std::string& name) const override {
        if (name == "XDG_CONFIG_HOME") return folder_;
        return name == "PATH" ? QuietProcesses::Environment(name) : std::string();
    }

private:
    std::string folder_;
};

class Windows : public testing::Test {
protected:
    // The browser is the user's and outlives the program; here it ends with the test.
    ~Windows() override {
        for (const int id : BrowserProcesses(profile_)) kill(id, SIGKILL);
        conformance::WaitUntil(clock_, [&] { return BrowserProcesses(profile_).empty(); });
    }

    // Opens a window of the user's browser and waits for its page.
    void Open() {
        std::string why;
        window_ = own_->Open(server_.Url("/"), why);
        ASSERT_TRUE(window_) << why;
        EXPECT_TRUE(
            Wait(*own_, [&] { return !window_->Busy() && window_->document().Named("a").by_id; }));
    }
    bool Wait(ChromiumWindows& windows, const std::function<bool()>& condition) {
        return conformance::WaitUntil(clock_, [&] {
            windows.DeliverEvents();
            return condition();
        });
    }

    PosixFiles files_;
    JumpingClock clock_;
    TemporaryFolder folder_;
    std::string profile_ = folder_.At("chromium");
    User user_{folder_.path()};
    User stranger_{folder_.At("none")};
    WebServer server_{[](const WebRequest& request) {
        const std::string fields =
            request.path == "/" ? "<input id=a><input id=b>" : "<input id=c>";
        return WebReply{.body = fields +
                                "<p id=log><script>onpageshow = (e) => {"
                                " log.textContent = e.persisted ? 'kept' : 'new'; }"
                                "</script>",
                        .cache_control = "max-age=60"};
    }};
    std::unique_ptr<ChromiumWindows> own_ = std::make_unique<ChromiumWindows>(
        stranger_, files_, clock_, ChromiumWindowsSettings{.profile_folder = profile_});
    std::shared_ptr<Browser> window_;
};

TEST_F(Windows, AreOpenedFoundAgainAndOutliveTheProgram) {
    // A browser that was killed leaves its file behind; the port is nobody's, or another program's.
    const std::pair<const char*, std::string> stale[] = {
        {"google-chrome", "1\n/devtools/browser/x"},
        {"microsoft-edge", std::to_string(server_.port()) + "\n/devtools/browser/x"},
    };
    for (const auto& [folder, text] : stale) {
        files_.MakeFolder(folder_.At(folder));
        ASSERT_TRUE(files_.Replace(folder_.At(folder) + "/DevToolsActivePort", text));
    }
    std::string address;
    const ChromiumWindowsSettings elsewhere{.debug_address = [&] { return address; },
                                            .profile_folder = folder_.At("none")};
    ChromiumWindows found(user_, files_, clock_, elsewhere);
    for (int look = 0; look < 10; ++look) {
        clock_.Jump(1000);
        found.DeliverEvents();
        EXPECT_TRUE(found.Visible().empty() && !found.Focused());
    }
    EXPECT_EQ(found.RoundTrips(), 0U) << "nothing waits for them";

    Open();
    EXPECT_EQ(window_->document().url(), server_.Url("/"));
    EXPECT_NE(window_->Handle(), 0U);
    EXPECT_GT(window_->State().place.width, 100);
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Visible() == std::vector{window_}; }));
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Focused() == window_; }));
    std::string why;
    const auto second = own_->Open("", why);
    ASSERT_TRUE(second) << why;
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Visible().size() == 2; }));
    second->Quit();
    EXPECT_TRUE(Wait(*own_, [&] { return own_->Visible() == std::vector{window_}; }));
    EXPECT_FALSE(second->Alive());
    own_.reset();

    // By the profile, by the port alone, and by what the browser has written.
    const std::string port_file = files_.Read(profile_ + "/DevToolsActivePort").value_or("");
    ChromiumWindows again(stranger_, files_, clock_, {.profile_folder = profile_});
    address = "localhost:" + port_file.substr(0, port_file.find('\n'));
    ChromiumWindows by_port(stranger_, files_, clock_, elsewhere);
    for (ChromiumWindows* windows : {&again, &found, &by_port}) {
        // A window that was hidden at first is asked again when the focused one is looked for.
        std::shared_ptr<Browser> same;
        ASSERT_TRUE(Wait(*windows, [&] { return (same = windows->Focused()) != nullptr; }));
        EXPECT_EQ(windows->Visible(), std::vector{same});
        EXPECT_TRUE(Wait(*windows, [&] { return same->document().url() == server_.Url("/"); }));
    }
}

// Follows a window from page to page, and writes down where the focus goes.
class FocusLog : public conformance::EventLog, public DocumentEvents {
public:
    explicit FocusLog(Browser& browser) : browser_(browser), window_(browser.Connect(*this)) {
        FocusLog::NavigateComplete2();
    }
    void NavigateComplete2() override {
        document_ = browser_.document();
        page_ = document_.Connect(*this);
    }
    void onfocusin() override { told.push_back("focus " + document_.activeElement().id()); }
    void onbeforedeactivate() override {
        told.push_back("leave " + document_.activeElement().id());
    }
    void onclick() override {}
    void onkeypress(int /*key_code*/) override {}
    void onsubmit() override {}

    std::vector<std::string> told;

private:
    Browser& browser_;
    Document document_;
    std::unique_ptr<Connection> window_;
    std::unique_ptr<Connection> page_;
};

// A page that the browser has kept comes back as it was, with what listens in it.
TEST_F(Windows, TellOfPagesThatTheBrowserHasKept) {
    Open();
    FocusLog log(*window_);
    const struct {
        const char* script;
        const char* field;  // of the page that is shown then
        const char* log;    // what that page says
        std::vector<std::string> told;
    } steps[] = {
        {"a.focus()", "a", "new", {"focus a"}},
        {"location = '/next'", "c", "new", {}},
        {"c.focus()", "c", "new", {"focus c"}},
        {"history.back()", "a", "kept", {}},
        {"b.focus()", "a", "kept", {"leave a", "focus b"}},
        {"history.forward()", "c", "kept", {}},
        {"c.blur()", "c", "kept", {"leave c"}},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.script);
        window_->Navigate(std::string("javascript:") + step.script);
        EXPECT_TRUE(Wait(*own_, [&] {
            const Document page = window_->document();
            return page.Named(step.field).by_id &&
                   page.Named("log").by_id.innerText() == step.log &&
                   log.told.size() >= step.told.size();
        }));
        // What must not come would be there now: the page has answered, and nothing waits longer.
        clock_.Jump(1000);
        own_->DeliverEvents();
        EXPECT_EQ(std::exchange(log.told, {}), step.told);
    }
}

}  // namespace
}  // namespace tamrin::test
