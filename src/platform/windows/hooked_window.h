#pragma once

#include <windows.h>

namespace tamrin {

// Sees the messages of a window of Windows' own before the window does. The window must outlive it.
//
// It stands in the window's own procedure: the system's way of subclassing looks its data up by
// name for each message, which makes the loading of a long list many times slower.
class HookedWindow {
public:
    explicit HookedWindow(HWND window);
    virtual ~HookedWindow();
    HookedWindow(const HookedWindow&) = delete;
    HookedWindow& operator=(const HookedWindow&) = delete;

protected:
    virtual LRESULT Handle(UINT message, WPARAM wide, LPARAM wider) = 0;

    // What the window itself does with a message.
    LRESULT Default(UINT message, WPARAM wide, LPARAM wider) const {
        return CallWindowProcW(own_, window_, message, wide, wider);
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wide, LPARAM wider);

    HWND window_;
    WNDPROC own_;
};

}  // namespace tamrin
