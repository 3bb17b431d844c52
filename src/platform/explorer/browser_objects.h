#pragma once

#include <windows.h>

#include <exdisp.h>

#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// The shell's list of its windows. Made at the first use and kept; made anew when the shell has
// been restarted.
class ShellList {
public:
    explicit ShellList(ComCalls& calls) : calls_(calls) {}

    // The browsers in the order of the list. The list's folder windows are left out.
    std::vector<ComPtr<IWebBrowser2>> Browsers();

private:
    ComCalls& calls_;
    ComPtr<IShellWindows> windows_;
};

// Whether an entry of the list is a browser, judged by its program's name.
bool IsIeWindow(ComCalls& calls, IWebBrowser2& entry);

// The top-level window of a browser; null when the browser does not answer.
HWND FrameOf(ComCalls& calls, IWebBrowser2& browser);

// The browser that shows a page, given the page's window object (SID_SWebBrowserApp). The window
// object gives it to programs even when it denies scripts access to the page. Null when there is
// none.
ComPtr<IWebBrowser2> BrowserServedBy(ComCalls& calls, IDispatch* window);

// The document that a content window ("Internet Explorer_Server") shows: its answer to the
// registered message "WM_HTML_GETOBJECT". Null when it shows none or does not answer within
// CallLimits::window_ms.
ComPtr<IDispatch> GetDocumentFromWindow(ComCalls& calls, HWND window);

}  // namespace tamrin
