#include "platform/chromium/chromium_windows.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <string>

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

}  // namespace
}  // namespace tamrin::test
