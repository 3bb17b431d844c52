#include "browser/wait.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

TEST(WaitMs, RoundsToPassesOfTenMillisecondsHalvesToEven) {
    const std::pair<long long, std::uint64_t> rows[] = {
        {0, 0},   {-50, 0}, {4, 0},   {5, 0},   {6, 10},  {10, 10},
        {14, 10}, {15, 20}, {16, 20}, {25, 20}, {35, 40}, {1000, 1000},
    };
    for (const auto& [milliseconds, passed] : rows) {
        VirtualClock clock;
        Globals globals;
        globals.activity = "play";
        WaitMs(clock, globals, milliseconds);
        EXPECT_EQ(clock.Elapsed(), passed) << milliseconds;
    }
}

TEST(WaitMs, EndsWhenTheActivityIsStopped) {
    VirtualClock clock;
    Globals globals;
    globals.activity = "play";
    clock.At(300, [&] { globals.activity.clear(); });
    WaitMs(clock, globals, 100000);
    EXPECT_EQ(clock.Elapsed(), 300U);
}

class IEWaitTest : public testing::Test {
protected:
    IEWaitTest() {
        globals.activity = "play";
        web.pages["p"] = "<p>";
        browser = web.Create(why);
        browser->Navigate("p");
    }
    VirtualClock clock{0xFFFFFF00};  // so that the tick count wraps during the waits
    ScriptedWeb web{clock};
    Globals globals;
    std::string why;
    std::shared_ptr<Browser> browser;
};

TEST_F(IEWaitTest, EndsWithTheCompletePage) {
    IEWait(clock, globals, *browser, 0);
    EXPECT_EQ(clock.Elapsed(), 30U);
    EXPECT_EQ(IEState(*browser), 4);
}

TEST_F(IEWaitTest, GivesUpAtTheLargerLimit) {
    web.busy = true;
    EXPECT_EQ(IEState(*browser), -1);
    IEWait(clock, globals, *browser, 200);
    EXPECT_EQ(clock.Elapsed(), 10010U);
    IEWait(clock, globals, *browser, 20000);
    EXPECT_EQ(clock.Elapsed(), 10010U + 20010U);
}

TEST_F(IEWaitTest, EndsWhenStoppedOrWhenTheBrowserDies) {
    web.busy = true;
    clock.At(500, [&] { globals.activity.clear(); });
    IEWait(clock, globals, *browser, 0);
    EXPECT_EQ(clock.Elapsed(), 500U);
    globals.activity = "play";
    clock.At(700, [&] { web.browser->Die(); });
    IEWait(clock, globals, *browser, 0);
    EXPECT_EQ(clock.Elapsed(), 700U);
}

}  // namespace
}  // namespace tamrin::test
