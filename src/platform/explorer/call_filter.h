#pragma once

#include <windows.h>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// Makes this thread a single-threaded COM apartment, which the browser's objects and drag and drop
// need. Must outlive all COM objects of the thread.
class Apartment {
public:
    Apartment();
    ~Apartment();
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    bool entered_;
};

// Watches this thread's calls into browsers for as long as it lives: while one waits, the program's
// windows are painted but handle nothing else, and its limits can end it. A call that was ended
// fails with RPC_E_CALL_CANCELED; what it began in the browser goes on there (WasBegun). One for
// each thread, inside the life of its Apartment.
class CallFilter {
public:
    // Sets the limits of `calls`, for as long as the filter lives.
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
