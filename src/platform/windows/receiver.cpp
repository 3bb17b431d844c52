#include "platform/windows/receiver.h"

#include <imm.h>

namespace tamrin {
namespace {

// Not declared by all headers: the question of WM_IME_CONTROL whether the input method is open.
constexpr WPARAM kGetOpenStatus = 5;
constexpr UINT kOpenStatusWithinMs = 100;

}  // namespace

Receiver FindReceiver() {
    GUITHREADINFO front{};
    front.cbSize = sizeof front;
    Receiver receiver;
    if (GetGUIThreadInfo(0, &front) != 0) {
        receiver.window = front.hwndFocus ? front.hwndFocus : front.hwndActive;
    }
    if (!receiver.window) receiver.window = GetForegroundWindow();
    const DWORD thread = GetWindowThreadProcessId(receiver.window, nullptr);
    receiver.keyboard = GetKeyboardLayout(thread);
    return receiver;
}

ReceiverAnswer AskReceiver(HWND window, int milliseconds) {
    // A message of its own, which no program knows: unlike WM_NULL it does not pass by the barrier
    // between programs of different rights, and so tells of it.
    static const UINT question = RegisterWindowMessageW(L"Tamrin.AreKeysProcessed");
    DWORD_PTR answer = 0;
    if (!window || SendMessageTimeoutW(window, question, 0, 0, SMTO_ABORTIFHUNG,
                                       static_cast<UINT>(milliseconds), &answer) != 0) {
        return ReceiverAnswer::kAnswered;
    }
    const DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED) return ReceiverAnswer::kRefused;
    return IsWindow(window) != 0 ? ReceiverAnswer::kLate : ReceiverAnswer::kAnswered;
}

bool InputMethodOpen(HWND window) {
    const HWND method = window ? ImmGetDefaultIMEWnd(window) : nullptr;
    DWORD_PTR open = 0;
    return method &&
           SendMessageTimeoutW(method, WM_IME_CONTROL, kGetOpenStatus, 0, SMTO_ABORTIFHUNG,
                               kOpenStatusWithinMs, &open) != 0 &&
           open != 0;
}

}  // namespace tamrin
