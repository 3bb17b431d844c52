#pragma once

#include <windows.h>

#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// The document that a content window ("Internet Explorer_Server") shows: what it answers to the
// registered message "WM_HTML_GETOBJECT". Null where it shows none or does not answer within two
// seconds.
ComPtr<IDispatch> GetDocumentFromWindow(ComCalls& calls, HWND window);

// A window in which a page is shown, and the window of the screen in which it lies.
struct ContentWindow {
    HWND frame = nullptr;
    HWND content = nullptr;
};

// The content windows among the windows of the screen, in their order: those of Edge, which shows
// pages in the mode of Internet Explorer, first.
std::vector<ContentWindow> ContentWindows(const std::vector<HWND>& screen);

}  // namespace tamrin
