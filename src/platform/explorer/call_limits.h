#pragma once

#include <windows.h>

#include <functional>

namespace tamrin {

// When a call into a browser that does not answer is given up. The times are milliseconds that the
// call has waited; they are looked at about ten times a second.
struct CallLimits {
    // Whether the program's user has stopped what runs; none for never. A call is then given a
    // moment more, for what a stop still has to read.
    std::function<bool()> stop_requested = nullptr;
    // Whether a message of a key or of the left mouse button, which waits in the queue, will stop
    // what runs once it is handled; none for never. It stays in the queue.
    std::function<bool(const MSG&)> means_stop = nullptr;

    DWORD stopped_ms = 500;
    // The browser shows a dialog box: the call comes back when the user has answered, and nobody
    // could while the program waits for it.
    DWORD box_ms = 100;
    // Whatever the reason.
    DWORD longest_ms = 30000;
};

// Whether the user has done what will stop the run when its message is handled.
bool StopWaits(const CallLimits& limits);

}  // namespace tamrin
