#pragma once

#include <windows.h>

#include <vector>

namespace tamrin {

// What Windows itself knows about the windows of browsers. None of these calls waits for a browser.

// The visible top-level windows, the front one first.
std::vector<HWND> VisibleWindows();

// The window inside a browser window that shows its page ("Internet Explorer_Server"); null when
// there is none. Of several the last one with a height: the tabs in the background have none.
HWND FindIeServerWindow(HWND browser);

// A window that shows a page, and the top-level window around it.
struct ContentWindow {
    HWND frame = nullptr;
    HWND content = nullptr;
    // Whether one of the two does not handle its messages, as Windows sees it after five seconds.
    bool hangs = false;
};

// The content windows that are shown inside these top-level windows, and all that hang, in their
// order; first those of Edge, which shows pages in Internet Explorer mode.
std::vector<ContentWindow> ContentWindows(const std::vector<HWND>& frames);

// The dialog box that blocks a browser window, such as a message or question of its page, a file
// dialog, or a page shown as a dialog box; null when there is none.
HWND BoxOf(HWND browser);

// Brings a window to the front and restores it when it is minimized. When a dialog box of its own
// has disabled the window, brings that box to the front.
//
// Windows allows this only to a program that is in front, was started by the one in front, or got
// the last input. When it refuses, this program makes an input without effect, and if that does not
// help attaches to the input of the front window's thread for a moment, unless that thread hangs.
// Windows still refuses while a menu is open and on a locked screen: then the window's button in
// the taskbar flashes, and the window stays where it is.
void BringToForeground(HWND window);

}  // namespace tamrin
