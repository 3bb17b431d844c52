#pragma once

#include <windows.h>

namespace tamrin {

// Brings a window to the front and restores it when it is minimised. Windows lets only the program
// in front do that, so this program shares the input of that one for the moment.
void BringToForeground(HWND window);

}  // namespace tamrin
