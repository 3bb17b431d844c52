#pragma once

#include <windows.h>

#include <exdisp.h>

#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// The shell's list of its windows, those of folders among them. Made at the first use and kept;
// when the shell is started anew, so is this.
class ShellList {
public:
    explicit ShellList(ComCalls& calls) : calls_(calls) {}

    // The browsers' windows in the order of the list.
    std::vector<ComPtr<IWebBrowser2>> Browsers();

private:
    ComCalls& calls_;
    ComPtr<IShellWindows> windows_;
};

// Whether an entry of the list is a browser's window, by the name of its program.
bool IsIeWindow(ComCalls& calls, IWebBrowser2& entry);

// The window of the screen in which a browser shows its page; null where it cannot be told.
HWND FrameOf(ComCalls& calls, IWebBrowser2& entry);

// The visible windows of the screen, the front one first.
std::vector<HWND> VisibleWindows();

}  // namespace tamrin
