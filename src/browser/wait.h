#pragma once

#include "platform/browser.h"
#include "platform/clock.h"
#include "state/globals.h"

namespace tamrin {

// Pauses for `milliseconds` / 10 passes (rounded to nearest, halves to even) of a 10 ms sleep, each
// followed by the events that have arrived. Ends at once when nothing is running any more.
void WaitMs(Clock& clock, const Globals& globals, long long milliseconds);

// -1 when the browser is busy, otherwise its ready state 0 to 4; 4 is complete.
int IEState(Browser& browser);

// Waits until the browser is idle and complete, for at most the larger of `timeout_ms` and the
// setting "max wait time". Ends early when nothing is running any more or the browser is gone.
void IEWait(Clock& clock, const Globals& globals, Browser& browser, std::uint32_t timeout_ms);

}  // namespace tamrin
