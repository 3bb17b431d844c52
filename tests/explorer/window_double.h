#pragma once

#include <windows.h>

#include <oaidl.h>

#include <atomic>
#include <functional>
#include <thread>

#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// Makes a window of a class of this name, in this thread; the class answers nothing of its own.
HWND MakeWindow(const wchar_t* class_name, HWND above, DWORD style, const RECT& place);

// Handles messages until `over` holds; calls from other threads are served meanwhile. False when
// that takes too long.
bool Pump(const std::function<bool()>& over);

// The frame of a browser with the window of its page inside.
struct BrowserWindowDouble {
    explicit BrowserWindowDouble(const wchar_t* frame_class = L"IEFrame");
    ~BrowserWindowDouble() { DestroyWindow(frame); }
    BrowserWindowDouble(const BrowserWindowDouble&) = delete;
    BrowserWindowDouble& operator=(const BrowserWindowDouble&) = delete;

    // What the content window answers to those who ask for its document; null answers 0.
    void Show(IDispatch* document);
    // From now on it answers nobody until the event is set.
    void HangUntil(HANDLE event);

    HWND frame;
    HWND content;
};

// A thread with an apartment of its own, which holds objects as the browser's process does: calls
// to them are marshaled, and wait while it does not handle its messages.
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

private:
    HWND door_ = nullptr;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

}  // namespace tamrin::test
