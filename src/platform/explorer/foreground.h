#pragma once

#include <windows.h>

namespace tamrin {

// Brings a window to the front, restored when it is minimised; a window that is disabled by a
// dialog box of its own, that box. Returns at once, also for a window that hangs.
//
// Windows lets a program do that only while it is in front itself, was started by the one in front,
// or received the last input. Where it refuses, this program makes an input that does nothing, and
// if that does not help shares the input of the one in front for the moment, unless that hangs.
// Windows still refuses while a menu is open, or over a locked screen: then the window's button in
// the taskbar flashes, and the window stays where it is.
void BringToForeground(HWND window);

}  // namespace tamrin
