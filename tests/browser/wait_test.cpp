#include "browser/wait.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

TEST(Wait, LastsItsPassesOrUntilThePageIsCompleteAndEndsWithTheActivity) {
    VirtualClock clock;
    ScriptedWeb web{clock};
    web.pages["p"] = "<p>";
    Globals globals;
    std::uint64_t end = 0;
    const auto waits = [&](long long milliseconds, std::uint64_t passed) {
        globals.activity = "play";
        WaitMs(clock, globals, milliseconds);
        EXPECT_EQ(clock.Elapsed(), end += passed) << milliseconds;
    };
    // In passes of 10 ms, halves to the even number.
    waits(-50, 0);
    waits(5, 0);
    waits(6, 10);
    waits(14, 10);
    waits(15, 20);
    waits(25, 20);
    clock.After(300, [&] { globals.activity.clear(); });
    waits(100000, 300);

    std::string why;
    const auto browser = web.Create(why);
    const auto waits_for_page = [&](std::uint32_t limit, std::uint64_t passed) {
        globals.activity = "play";
        IEWait(clock, globals, *browser, limit);
        EXPECT_EQ(clock.Elapsed(), end += passed) << limit;
    };
    browser->Navigate("p");
    EXPECT_EQ(IEState(*browser), -1);
    waits_for_page(0, 30);
    EXPECT_EQ(IEState(*browser), 4);
    web.busy = true;
    waits_for_page(200, 10010);
    waits_for_page(20000, 20010);
    clock.After(500, [&] { globals.activity.clear(); });
    waits_for_page(0, 500);
    clock.After(700, [&] { web.browser->Die(); });
    waits_for_page(0, 700);
}

}  // namespace
}  // namespace tamrin::test
