#include "platform/explorer/call_filter.h"

#include <objidl.h>

#include <utility>

#include "platform/explorer/com_object.h"

namespace tamrin {
namespace {

// A waiting call is looked at when a message is posted to its thread, which a thread of the system
// sees to; it does nothing else.
constexpr DWORD kTickMs = 100;
constexpr UINT kTick = WM_APP;
// The program's windows; one that does not paint what it is asked to would be asked for ever.
constexpr int kMostPaints = 50;
// What the component model takes for "try again after so many milliseconds" and "give up".
constexpr DWORD kTryAgainMs = 100;
constexpr DWORD kRejectedMs = 5000;
constexpr auto kGiveUp = static_cast<DWORD>(-1);

void CALLBACK Tick(PVOID window, BOOLEAN) { PostMessageW(static_cast<HWND>(window), kTick, 0, 0); }

}  // namespace

class CallFilter::Filter : public ComObject<IMessageFilter> {
public:
    Filter(const ComCalls& calls, HWND clock) : calls_(calls), clock_(clock) {}

    // Events of the browser come while it is called; they are only noted.
    STDMETHODIMP_(DWORD) HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
        return SERVERCALL_ISHANDLED;
    }

    STDMETHODIMP_(DWORD) RetryRejectedCall(HTASK, DWORD waited, DWORD) override {
        const bool over = waited >= kRejectedMs || calls_.MustEnd(waited);
        return over ? kGiveUp : kTryAgainMs;
    }

    STDMETHODIMP_(DWORD) MessagePending(HTASK, DWORD waited, DWORD) override {
        MSG message;
        while (PeekMessageW(&message, clock_, kTick, kTick, PM_REMOVE)) continue;
        Paint();
        return calls_.MustEnd(waited) ? PENDINGMSG_CANCELCALL : PENDINGMSG_WAITDEFPROCESS;
    }

private:
    static void Paint() {
        MSG message;
        for (int i = 0; i < kMostPaints; ++i) {
            if (!PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE | PM_NOYIELD))
                return;
            DispatchMessageW(&message);
        }
    }

    const ComCalls& calls_;
    const HWND clock_;
};

CallFilter::CallFilter(ComCalls& calls, CallLimits limits)
    : calls_(calls),
      clock_(CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                             nullptr)) {
    calls.SetLimits(std::move(limits));
    filter_ = ComPtr<Filter>(new Filter(calls, clock_));
    CreateTimerQueueTimer(&timer_, nullptr, Tick, clock_, kTickMs, kTickMs,
                          WT_EXECUTEINTIMERTHREAD);
    calls.Note(CoRegisterMessageFilter(filter_.get(), nullptr), "call", "program",
               "CoRegisterMessageFilter");
}

CallFilter::~CallFilter() {
    IMessageFilter* registered = nullptr;
    CoRegisterMessageFilter(nullptr, &registered);
    if (registered) registered->Release();
    DeleteTimerQueueTimer(nullptr, timer_, INVALID_HANDLE_VALUE);  // waits for the last tick
    DestroyWindow(clock_);
    calls_.SetLimits({});
}

}  // namespace tamrin
