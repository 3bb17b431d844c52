#pragma once

#include <windows.h>

namespace tamrin {

// The dialog box that stands before a browser window and keeps its page from going on, such as a
// message or a question of the page, a choice of files, a page shown as a dialog box; null when
// there is none. Asks the system alone and never waits for the browser.
HWND BoxOf(HWND browser);

}  // namespace tamrin
