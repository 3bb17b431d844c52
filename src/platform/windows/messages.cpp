#include "platform/windows/messages.h"

#include <windows.h>

#include "platform/windows/window_form.h"

namespace tamrin {

void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
        WindowForm* const form = root ? WindowForm::Of(root) : nullptr;
        if (form) form->tips().Relay(message);
        if (form && (form->TakesShortcut(message) || IsDialogMessageW(root, &message))) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace tamrin
