#pragma once

#include <windows.h>

#include <exdisp.h>

#include <memory>
#include <vector>

#include "platform/explorer/dispatch_object.h"

namespace tamrin {

// The shell's list of its windows. Made at the first use and kept; made anew when the shell has
// been restarted.
class ShellList {
public:
    explicit ShellList(ComCalls& calls)
        : calls_(calls), type_(std::make_shared<ObjectType>(calls, "browser")) {}

    // The browsers in the order of the list. The list's folder windows are left out.
    std::vector<DispatchObject> Browsers();

private:
    ComCalls& calls_;
    const std::shared_ptr<ObjectType> type_;
    ComPtr<IShellWindows> windows_;
};

// A browser object (IWebBrowser2), whose members are called by name.
DispatchObject BrowserObject(ComCalls& calls, ComPtr<IDispatch> browser);

// Whether an entry of the list is a browser, judged by its program's name.
bool IsIeWindow(const DispatchObject& entry);

// The top-level window of a browser; null when the browser does not answer.
HWND FrameOf(const DispatchObject& browser);

// The browser that shows a page, given the page's window object (SID_SWebBrowserApp). The window
// object gives it to programs even when it denies scripts access to the page. Null when there is
// none.
DispatchObject BrowserServedBy(const DispatchObject& window);

// The document that a content window ("Internet Explorer_Server") shows: its answer to the
// registered message "WM_HTML_GETOBJECT". Null when it shows none or does not answer within
// CallLimits::window_ms.
ComPtr<IDispatch> GetDocumentFromWindow(ComCalls& calls, HWND window);

}  // namespace tamrin
