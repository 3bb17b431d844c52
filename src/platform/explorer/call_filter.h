#pragma once

#include <windows.h>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// Watches over the calls that this thread makes into browsers, for as long as it lives: while one
// waits, the program's windows are painted but handle nothing else, and the call ends by itself
// where its limits say so. A call that has ended so fails with RPC_E_CALL_CANCELED; what it began
// in the browser goes on there (WasBegun). One for each thread, made after the thread's apartment
// and gone before it.
class CallFilter {
public:
    // `calls` keeps the limits until the end of this.
    CallFilter(ComCalls& calls, CallLimits limits);
    ~CallFilter();
    CallFilter(const CallFilter&) = delete;
    CallFilter& operator=(const CallFilter&) = delete;

private:
    class Filter;
    ComCalls& calls_;
    ComPtr<Filter> filter_;
    HWND clock_;
    HANDLE timer_ = nullptr;
};

}  // namespace tamrin
