#include "browser/wait.h"

#include <algorithm>

namespace tamrin {

void WaitMs(Clock& clock, const Globals& globals, long long milliseconds) {
    long long passes = milliseconds / 10;
    const long long rest = milliseconds % 10;
    if (rest > 5 || (rest == 5 && passes % 2 == 1)) ++passes;
    for (; passes > 0 && !globals.activity.empty(); --passes) {
        clock.Sleep(10);
        clock.DoEvents();
    }
}

int IEState(Browser& browser) { return browser.Busy() ? -1 : browser.ReadyState(); }

void IEWait(Clock& clock, const Globals& globals, Browser& browser, std::uint32_t timeout_ms) {
    const std::uint32_t limit = std::max(timeout_ms, globals.settings.MaxWaitMs());
    const std::uint32_t start = clock.TickCount();
    while (IEState(browser) != 4) {
        if (clock.TickCount() - start > limit || globals.activity.empty() || !browser.Alive()) {
            return;
        }
        clock.Sleep(10);
        clock.DoEvents();
    }
}

}  // namespace tamrin
