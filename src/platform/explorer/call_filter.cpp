#include "platform/explorer/call_filter.h"

#include <objidl.h>
#include <ole2.h>

#include <utility>

#include "platform/explorer/com_object.h"

namespace tamrin {
namespace {

// COM calls MessagePending only when a message arrives, so a timer on a thread of the system posts
// one. The message itself does nothing.
constexpr DWORD kTickMs = 100;
constexpr UINT kTick = WM_APP;
// Ends the painting even when a window never validates itself.
constexpr int kMaxPaints = 50;
// The answers for "retry after so many milliseconds" and "give up".
constexpr DWORD kRetryMs = 100;
constexpr DWORD kRejectedMs = 5000;
constexpr auto kGiveUp = static_cast<DWORD>(-1);

void CALLBACK Tick(PVOID window, BOOLEAN) { PostMessageW(static_cast<HWND>(window), kTick, 0, 0); }

}  // namespace

class CallFilter::Filter : public ComObject<IMessageFilter> {
public:
    Filter(const ComCalls& calls, HWND clock) : calls_(calls), clock_(clock) {}

    // The browser's events arrive during calls; they are only queued.
    STDMETHODIMP_(DWORD) HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
        return SERVERCALL_ISHANDLED;
    }

    STDMETHODIMP_(DWORD) RetryRejectedCall(HTASK, DWORD waited, DWORD) override {
        const bool over = waited >= kRejectedMs || calls_.MustEnd(waited);
        return over ? kGiveUp : kRetryMs;
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
        for (int i = 0; i < kMaxPaints; ++i) {
            if (!PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE | PM_NOYIELD))
                return;
            DispatchMessageW(&message);
        }
    }

    const ComCalls& calls_;
    const HWND clock_;
};

Apartment::Apartment() : entered_(SUCCEEDED(OleInitialize(nullptr))) {}

Apartment::~Apartment() {
    if (entered_) OleUninitialize();
}

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
