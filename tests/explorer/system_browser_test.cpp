#include <gtest/gtest.h>

#include <exdisp.h>

#include <functional>

#include "platform/explorer/explorer_windows.h"
#include "platform/explorer/browser_objects.h"

namespace tamrin::test {
namespace {

class QuitLog : public BrowserEvents {
public:
    void DocumentComplete(bool) override {}
    void BeforeNavigate2(const std::string&) override {}
    void NavigateError(const std::string&, const std::string&) override {}
    void OnQuit() override { quit = true; }

    bool quit = false;
};

// Handles messages, by which another process's calls come, until `condition` holds.
bool Pump(const std::function<bool()>& condition) {
    for (int pass = 0; pass < 500 && !condition(); ++pass) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(10);
    }
    return condition();
}

// The browser of the system that runs the test, in a process of its own. Some systems' browser
// does not take more than this.
TEST(SystemBrowser, IsMadeShownAndMissed) {
    ComCalls calls;
    HRESULT failure = S_OK;
    auto object = SystemSources(calls).create(failure);
    if (!object) GTEST_SKIP() << "no browser: " << std::hex << failure;
    ExplorerBrowser browser(calls, std::move(object));
    QuitLog log;
    std::vector<std::string> lines;
    calls.Trace([&lines](const std::string& line) { lines.push_back(line); });
    const auto connection = browser.Connect(log);
    browser.SetVisible(true);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the number is the handle
    const auto window = reinterpret_cast<HWND>(browser.Handle());
    EXPECT_TRUE(IsWindowVisible(window));
    browser.SetForeground();
    EXPECT_TRUE(browser.Alive());
    EXPECT_EQ(lines, std::vector<std::string>());
    DWORD process_id = 0;
    GetWindowThreadProcessId(window, &process_id);
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, process_id);
    EXPECT_TRUE(TerminateProcess(process, 1));
    CloseHandle(process);
    EXPECT_TRUE(Pump([&] {
        browser.Alive();
        browser.DeliverEvents();
        return log.quit;
    }));
    EXPECT_FALSE(browser.Alive());
}

TEST(ShellListTest, AnswersWhateverTheShellAnswers) {
    ComCalls calls;
    ShellList list(calls);
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto& browser : list.Browsers()) EXPECT_TRUE(browser);
    }
    EXPECT_GT(calls.count(), 0U);
}

}  // namespace
}  // namespace tamrin::test
