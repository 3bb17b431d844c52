#include "platform/windows/input.h"

#include "platform/windows/input_batch.h"
#include "platform/windows/key_table.h"
#include "platform/windows/receiver.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

// How many characters are sent before the receiver is waited for.
constexpr int kLongestRun = 16;
constexpr int kPauseMs = 10;
// In which the receiver comes to take its next message.
constexpr int kMomentMs = 1;
// An answer is waited for in slices, between which the user's Stop is heard.
constexpr int kSliceMs = 50;

// Whether it only types a character. Every other key may change where the next one goes.
bool IsPlain(const KeyStroke& stroke) {
    return stroke.name.empty() && !stroke.ctrl && !stroke.alt && stroke.text != " ";
}

unsigned ModifiersOf(const KeyStroke& stroke) {
    return (stroke.shift ? kShift : 0U) | (stroke.ctrl ? kCtrl : 0U) | (stroke.alt ? kAlt : 0U);
}

unsigned ModifiersOf(const VirtualKey& key) {
    return (key.shift ? kShift : 0U) | (key.ctrl ? kCtrl : 0U) | (key.alt ? kAlt : 0U);
}

// The key that a stroke is sent as; none for a character that is sent as itself.
VirtualKey FindKey(const KeyStroke& stroke, const std::wstring& text, const Receiver& receiver) {
    if (!stroke.name.empty()) return FindNamedKey(stroke.name);
    if (text.size() != 1) return {};
    const bool presses =
        text.front() < L' ' || (text.front() == L' ' && !InputMethodOpen(receiver.window));
    if (!stroke.ctrl && !stroke.alt && !presses) return {};
    return FindCharacterKey(text.front(), receiver.keyboard);
}

// Releases what is still held down when the keys end, at their end or before.
struct HeldKeys {
    ~HeldKeys() {
        InputBatch batch;
        batch.Let(modifiers);
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
    // On the way to a screen of another scale Windows may miss the point; from there it does not.
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
        if (IsPlain(stroke) && ++run < kLongestRun) continue;
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
        batch.Let(held);
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
