#include "platform/windows/clock.h"

#include <windows.h>

#include <mmsystem.h>

#include <cstdio>

#include "platform/windows/system_library.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// Without this a sleep of 10 ms takes up to 16, and each wait of a scenario half as long again.
constexpr UINT kTimerPeriodMs = 1;
constexpr DWORD kMaxWaitMs = 50;

void SetTimerPeriod(const char* function) {
    const auto call = SystemFunction<decltype(timeBeginPeriod)>(L"winmm.dll", function);
    if (call) call(kTimerPeriodMs);
}

// Handles every message in this thread's queue and returns without waiting for more. The shortcuts
// of the active form come first, then Tab and the other keys of a dialog, then the window itself.
// WM_QUIT stays in the queue.
void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
        WindowForm* const form = root ? WindowForm::Of(root) : nullptr;
        if (form) form->tips().Relay(message);
        if (form && (form->TakesShortcut(message) || IsDialogMessageW(root, &message))) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

WindowsClock::WindowsClock() { SetTimerPeriod("timeBeginPeriod"); }

WindowsClock::~WindowsClock() { SetTimerPeriod("timeEndPeriod"); }

std::uint32_t WindowsClock::TickCount() const { return GetTickCount(); }

std::string WindowsClock::TimeStamp() const {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    char text[32] = "";
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond);
    return text;
}

void WindowsClock::Sleep(int milliseconds) {
    if (milliseconds > 0) ::Sleep(static_cast<DWORD>(milliseconds));
}

void WindowsClock::DoEvents() {
    HandleMessages();
    // By index: a source may register another one.
    for (std::size_t i = 0; i < sources_.size(); ++i) sources_[i]();
}

void WindowsClock::WaitForEvents() {
    MsgWaitForMultipleObjectsEx(0, nullptr, sources_.empty() ? INFINITE : kMaxWaitMs, QS_ALLINPUT,
                                MWMO_INPUTAVAILABLE);
    DoEvents();
}

}  // namespace tamrin
