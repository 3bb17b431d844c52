#include "platform/windows/clock.h"

#include <windows.h>

#include <mmsystem.h>

#include <cstdio>

#include "platform/windows/messages.h"

namespace tamrin {
namespace {

// Without it a sleep of 10 ms takes up to 16, and every wait of a scenario half as long again.
constexpr UINT kTimerPeriodMs = 1;
constexpr DWORD kLongestWaitMs = 50;

}  // namespace

WindowsClock::WindowsClock() { timeBeginPeriod(kTimerPeriodMs); }

WindowsClock::~WindowsClock() { timeEndPeriod(kTimerPeriodMs); }

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
    MsgWaitForMultipleObjectsEx(0, nullptr, sources_.empty() ? INFINITE : kLongestWaitMs,
                                QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DoEvents();
}

}  // namespace tamrin
