#include "chromium/chromium_fixture.h"
#include "platform/chromium/notice_queue.h"

namespace tamrin::test {
namespace {

using Loading = ChromiumTest;

// A player that acts again must not meet the page that its last act is sending away.
TEST_F(Loading, IsKnownWhenTheActThatBeginsItReturns) {
    const std::pair<std::string, std::string> rows[] = {
        {"<a id=k href=/echo>次の頁</a>", "fire:k:onclick click:k"},
        {"<a id=k href=/echo>次の頁</a>", "@k"},
        {"<form action=/echo><input id=k></form>", "@k {ENTER}"},
        {"<form action=/echo method=post><button id=k>送</button></form>", "click:k"},
        {"<button id=k onclick=\"history.pushState(0, '', '/pushed')\">b</button>", "click:k"},
    };
    for (const auto& [html, acts] : rows) {
        SCOPED_TRACE(html);
        Open(html);
        Do(acts);
        const bool loads = html.find("/echo") != std::string::npos;
        // On a slow machine the next page may be there before the program runs again.
        const auto arrived = [&] { return browser().document().url().starts_with(Url("/echo")); };
        EXPECT_EQ(browser().Busy() || arrived(), loads);
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(arrived(), loads);
    }
}

TEST_F(Loading, TellsTheBrowsersWordForWhatFails) {
    Check(
        {{"", "go:127.0.0.1:1/none done", "",
          "navigate , NavigateError http://127.0.0.1:1/none ERR_UNSAFE_PORT, DocumentComplete top"},
         {"", "go:C:/none done", "",
          "navigate , NavigateError file:///C:/none ERR_FILE_NOT_FOUND, DocumentComplete top"},
         {"", "go:http://[bad/ done", "", "NavigateError http://[bad/ ERR_INVALID_URL"}});
}

TEST(NoticeQueue, LetsANavigationWaitForThePagesLastSnapshot) {
    const FrameTracker frames("top", "session", "world");
    const JumpingClock clock;
    for (const bool may_wait : {false, true}) {
        NoticeQueue queue(frames, clock);
        queue.AddNavigation({.kind = Notice::Kind::kBeforeNavigate, .agent = "a"}, may_wait);
        EXPECT_EQ(queue.Next().has_value(), !may_wait);
        if (!may_wait) continue;
        queue.AddLastSnapshot(std::make_shared<const PageSnapshot>(PageSnapshot{"a", {}}));
        const auto notice = queue.Next();
        EXPECT_TRUE(notice && notice->snapshots.size() == 1);
    }
}

}  // namespace
}  // namespace tamrin::test
