#pragma once

#include <windows.h>

namespace tamrin {

// The window that gets what is typed now: the one that has the focus in the program in front.
struct Receiver {
    HWND window = nullptr;   // null when nothing is in front, as over a locked screen
    HKL keyboard = nullptr;  // the keyboard layout of its program
};

Receiver FindReceiver();

enum class ReceiverAnswer {
    kAnswered,  // it handles its messages, or is gone
    kLate,      // not in the time given, or Windows holds it to hang
    kRefused,   // it runs with higher rights: Windows gives it nothing from this program
};

// Asks a window for a sign of life and waits for it at most that long. Answers at once for a window
// that hangs. What this thread is sent meanwhile is handled, what is posted waits.
ReceiverAnswer AskReceiver(HWND window, int milliseconds);

// Whether an input method is open there, which would take the next key for itself.
bool InputMethodOpen(HWND window);

}  // namespace tamrin
