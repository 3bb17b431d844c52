#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// A thread with an apartment of its own, which holds objects as the browser's process does: calls
// to them travel, and wait while it does not handle its messages.
class OtherProgram {
public:
    OtherProgram();
    // Ends it; waits until it has handled what it was asked.
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    // Runs something there and returns when it is done. Not from inside a call to its objects.
    void Do(const std::function<void()>& act);
    // The object that `make` makes there, as this thread calls it.
    ComPtr<IDispatch> Give(const std::function<ComPtr<IDispatch>()>& make);

    // Handles messages on whichever thread until `over` holds; calls are served meanwhile.
    static bool Pump(const std::function<bool()>& over, DWORD longest_ms = 10000);

private:
    HWND door_ = nullptr;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

}  // namespace tamrin::test
