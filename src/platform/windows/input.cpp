#include "platform/windows/input.h"

#include <windows.h>

#include <imm.h>

#include "platform/windows/input_batch.h"
#include "platform/windows/key_table.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

// How many characters are sent before waiting for the receiver.
constexpr int kMaxRun = 16;
constexpr int kPauseMs = 10;
// Time for the receiver to take its next message.
constexpr int kMomentMs = 1;
// A wait for an answer is cut into slices; between them the user's Stop is noticed.
constexpr int kSliceMs = 50;
// IMC_GETOPENSTATUS of WM_IME_CONTROL, which not all headers declare.
constexpr WPARAM kGetOpenStatus = 5;
constexpr UINT kOpenStatusTimeoutMs = 100;

// The window that gets the keys now: the one with the focus in the program in front.
struct Receiver {
    HWND window = nullptr;   // null when nothing is in front: the screen is locked
    HKL keyboard = nullptr;  // the keyboard layout of its program
};

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

enum class ReceiverAnswer {
    kAnswered,  // it handles its messages, or is gone
    kLate,      // not within the timeout, or Windows takes it for hanging
    kRefused,   // it runs with higher rights, so Windows passes nothing to it
};

// Sends a window a message and waits for the answer up to the timeout. Returns at once for a window
// that hangs. Meanwhile this thread handles messages that are sent to it, not posted ones.
ReceiverAnswer AskReceiver(HWND window, int milliseconds) {
    // A registered message that no program knows. Unlike WM_NULL it is refused by a program with
    // higher rights, which tells us that keys are refused too.
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

// Whether an input method is open in that window. It would take the next key for itself.
bool InputMethodOpen(HWND window) {
    const HWND method = window ? ImmGetDefaultIMEWnd(window) : nullptr;
    DWORD_PTR open = 0;
    return method &&
           SendMessageTimeoutW(method, WM_IME_CONTROL, kGetOpenStatus, 0, SMTO_ABORTIFHUNG,
                               kOpenStatusTimeoutMs, &open) != 0 &&
           open != 0;
}

// Whether it only types a character. Any other key may change the receiver of the next one.
bool IsPlain(const KeyStroke& stroke) {
    return stroke.name.empty() && !stroke.ctrl && !stroke.alt && stroke.text != " ";
}

unsigned ModifiersOf(const KeyStroke& stroke) {
    return (stroke.shift ? kShift : 0U) | (stroke.ctrl ? kCtrl : 0U) | (stroke.alt ? kAlt : 0U);
}

unsigned ModifiersOf(const VirtualKey& key) {
    return (key.shift ? kShift : 0U) | (key.ctrl ? kCtrl : 0U) | (key.alt ? kAlt : 0U);
}

// The key for a stroke; none for a character that is sent as text.
VirtualKey FindKey(const KeyStroke& stroke, const std::wstring& text, const Receiver& receiver) {
    if (!stroke.name.empty()) return FindNamedKey(stroke.name);
    if (text.size() != 1) return {};
    const bool presses =
        text.front() < L' ' || (text.front() == L' ' && !InputMethodOpen(receiver.window));
    if (!stroke.ctrl && !stroke.alt && !presses) return {};
    return FindCharacterKey(text.front(), receiver.keyboard);
}

// Releases the modifiers that are still held down when the sending ends.
struct HeldKeys {
    ~HeldKeys() {
        InputBatch batch;
        batch.ReleaseHeld(modifiers);
        batch.Send();
    }
    unsigned modifiers = 0;
};

}  // namespace

ScreenPoint WindowsInput::GetCursorPos() {
    POINT point{};
    ::GetCursorPos(&point);
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
}

void WindowsInput::SetCursorPos(ScreenPoint point) {
    ::SetCursorPos(point.x, point.y);
    // Windows may miss the point when the pointer moves to a screen of another scale. The second
    // time it starts on that screen.
    if (GetCursorPos() != point) ::SetCursorPos(point.x, point.y);
}

void WindowsInput::LeftButton(bool down) {
    const bool exchanged = GetSystemMetrics(SM_SWAPBUTTON) != 0;
    INPUT button{};
    button.type = INPUT_MOUSE;
    button.mi.dwFlags = exchanged ? (down ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_RIGHTUP)
                                  : (down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP);
    InputBatch batch;
    if (down) batch.Hold(0, 0);
    batch.Add(button);
    batch.Send();
}

bool WindowsInput::SendKeys(const std::vector<KeyStroke>& keys) {
    if (keys.empty()) return true;
    if (!WaitForAnswers(1)) return false;
    HeldKeys held;
    int run = 0;
    unprocessed_ = 0;
    for (const KeyStroke& stroke : keys) {
        if (!LetTheUserAct() || !SendStroke(stroke, held.modifiers)) return false;
        if (IsPlain(stroke) && ++run < kMaxRun) continue;
        run = 0;
        if (!WaitForAnswers(unprocessed_ + 1)) return false;
        unprocessed_ = 0;
    }
    return run == 0 || WaitForAnswers(unprocessed_ + 1);
}

bool WindowsInput::SendStroke(const KeyStroke& stroke, unsigned& held) {
    const Receiver receiver = FindReceiver();
    const std::wstring text = Wide(stroke.text);
    const VirtualKey key = FindKey(stroke, text, receiver);
    const unsigned modifiers = ModifiersOf(stroke) | ModifiersOf(key);
    InputBatch batch;
    batch.Hold(modifiers, held);
    held = modifiers;
    if (key.code != 0) {
        batch.Press(key.code, key.extended, receiver.keyboard);
        batch.Release(key.code, key.extended, receiver.keyboard);
    } else {
        batch.Type(stroke.shift ? Shifted(text, receiver.keyboard) : text);
    }
    if (!stroke.holds_on) {
        batch.ReleaseHeld(held);
        held = 0;
    }
    unprocessed_ += batch.Messages();
    return batch.Send();
}

bool WindowsInput::LetTheUserAct() {
    clock_.DoEvents();
    while (GetCapture() && !Stopped()) {
        clock_.Sleep(kPauseMs);
        clock_.DoEvents();
    }
    return !Stopped();
}

bool WindowsInput::WaitForAnswers(int answers) {
    const auto limit = static_cast<std::uint32_t>(options_.answer_limit_ms);
    std::uint32_t last = clock_.TickCount();
    while (answers > 0) {
        clock_.DoEvents();
        if (Stopped()) return false;
        switch (AskReceiver(FindReceiver().window, kSliceMs)) {
            case ReceiverAnswer::kAnswered:
                --answers;
                last = clock_.TickCount();
                clock_.Sleep(kMomentMs);
                break;
            case ReceiverAnswer::kLate:
                if (clock_.TickCount() - last > limit) return false;
                clock_.Sleep(kPauseMs);
                break;
            case ReceiverAnswer::kRefused:
                return false;
        }
    }
    clock_.DoEvents();
    return true;
}

}  // namespace tamrin
