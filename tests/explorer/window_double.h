#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace tamrin::test {

// Makes a window of a class of this name, in this thread; the class answers nothing of its own.
HWND MakeWindow(const wchar_t* class_name, HWND above, DWORD style, const RECT& place);

// The frame of a browser with the window of its page inside.
struct BrowserWindowDouble {
    explicit BrowserWindowDouble(const wchar_t* frame_class = L"IEFrame");
    ~BrowserWindowDouble() { DestroyWindow(frame); }
    BrowserWindowDouble(const BrowserWindowDouble&) = delete;
    BrowserWindowDouble& operator=(const BrowserWindowDouble&) = delete;

    // Shows a dialog box of the page and handles messages until it is closed by Enter (true) or
    // Esc.
    bool ShowBox();

    // What the content window answers to those who ask for its document; none answers 0.
    void Show(IDispatch* document);
    // From now on it answers nobody for a time.
    void HangFor(DWORD milliseconds);

    HWND frame;
    HWND content;
};

}  // namespace tamrin::test
