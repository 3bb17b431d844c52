#include "browser/wait.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

class WaitTest : public testing::Test {
protected:
    WaitTest() { globals.activity = "play"; }
    VirtualClock clock{0xFFFFFF00};  // so that the tick count wraps during the waits
    ScriptedWeb web{clock};
    Globals globals;
};

TEST_F(WaitTest, RoundsToPassesOfTenMillisecondsHalvesToEven) {
    const std::pair<long long, std::uint64_t> rows[] = {{0, 0},   {-50, 0}, {5, 0},   {6, 10},
                                                        {14, 10}, {15, 20}, {16, 20}, {25, 20}};
    for (const auto& [milliseconds, passed] : rows) {
        const auto before = clock.Elapsed();
        WaitMs(clock, globals, milliseconds);
        EXPECT_EQ(clock.Elapsed() - before, passed) << milliseconds;
    }
    clock.At(clock.Elapsed() + 300, [&] { globals.activity.clear(); });
    const auto before = clock.Elapsed();
    WaitMs(clock, globals, 100000);
    EXPECT_EQ(clock.Elapsed() - before, 300U);
}

TEST_F(WaitTest, LastsUntilThePageIsCompleteOrAtMostTheLargerLimit) {
    std::string why;
    const auto browser = web.Create(why);
    web.pages["p"] = "<p>";
    std::uint64_t end = 0;
    const auto waits = [&](std::uint32_t limit, std::uint64_t milliseconds) {
        IEWait(clock, globals, *browser, limit);
        end += milliseconds;
        EXPECT_EQ(clock.Elapsed(), end);
    };
    EXPECT_EQ(IEState(*browser), 1);
    browser->Navigate("p");
    waits(0, 30);
    EXPECT_EQ(IEState(*browser), 4);
    web.busy = true;
    EXPECT_EQ(IEState(*browser), -1);
    waits(200, 10010);
    waits(20000, 20010);
    clock.At(end + 500, [&] { globals.activity.clear(); });
    waits(0, 500);
    globals.activity = "play";
    clock.At(end + 700, [&] { web.browser->Die(); });
    waits(0, 700);
}

}  // namespace
}  // namespace tamrin::test
