#include "platform/explorer/foreground.h"

namespace tamrin {
namespace {

bool InFront(HWND window) { return GetForegroundWindow() == window; }

bool TakeFront(HWND window) { return SetForegroundWindow(window) != 0 && InFront(window); }

// A movement of the mouse by nothing: whoever made the last input may change what is in front.
void MakeInput() {
    INPUT input{};
    input.type = INPUT_MOUSE;
    SendInput(1, &input, sizeof input);
}

void TakeFrontWithSharedInput(HWND window) {
    const HWND front = GetForegroundWindow();
    // Sharing the input of a thread that hangs would hang this one.
    if (!front || IsHungAppWindow(front)) return;
    const DWORD others = GetWindowThreadProcessId(front, nullptr);
    const DWORD own = GetCurrentThreadId();
    if (others == own || !AttachThreadInput(own, others, TRUE)) return;
    SetForegroundWindow(window);
    AttachThreadInput(own, others, FALSE);
}

}  // namespace

void BringToForeground(HWND window) {
    if (!IsWindow(window)) return;
    // Does not wait for a browser that hangs.
    if (IsIconic(window)) ShowWindowAsync(window, SW_RESTORE);
    const HWND box = IsWindowEnabled(window) ? nullptr : GetLastActivePopup(window);
    if (box && IsWindowVisible(box) && IsWindowEnabled(box)) window = box;
    if (InFront(window) || TakeFront(window)) return;
    MakeInput();
    if (!TakeFront(window)) TakeFrontWithSharedInput(window);
}

}  // namespace tamrin
