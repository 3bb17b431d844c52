#include "platform/explorer/foreground.h"

namespace tamrin {

void BringToForeground(HWND window) {
    if (!IsWindow(window)) return;
    // Does not wait for a browser that hangs.
    if (IsIconic(window)) ShowWindowAsync(window, SW_RESTORE);
    if (SetForegroundWindow(window) && GetForegroundWindow() == window) return;
    const HWND front = GetForegroundWindow();
    if (!front || IsHungAppWindow(front)) return;
    const DWORD others = GetWindowThreadProcessId(front, nullptr);
    const DWORD own = GetCurrentThreadId();
    if (others == own || !AttachThreadInput(own, others, TRUE)) return;
    SetForegroundWindow(window);
    AttachThreadInput(own, others, FALSE);
}

}  // namespace tamrin
