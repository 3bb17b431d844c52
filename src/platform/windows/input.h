#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/input.h"

namespace tamrin {

// The mouse and the keyboard of this computer (SendInput). What is sent goes to the window that has
// the focus, as if its user had done it.
//
// Text is sent as characters and not as keys, so that an open input method neither takes it nor
// changes its order, whatever CapsLock says. What is typed with Ctrl or Alt, the space, which also
// presses buttons, and named keys are keys. Shift, Ctrl, Alt and the Windows key that somebody
// holds down count as released from the first stroke or click on that does not want them.
//
// Windows does not tell when a key has been processed. But a program answers what it is sent each
// time before it takes its next message, and not while it works on one: so it is asked once more
// than the keys are messages, with a moment between in which it takes the next. What it puts off
// for later may still be to come.
class WindowsInput : public Input {
public:
    struct Options {
        // Whether what is not sent yet is not to be sent; null: never. Asked between strokes.
        std::function<bool()> stop_requested;
        // How long a program may take for what it was sent before the rest is given up.
        int answer_limit_ms = 10000;
    };

    WindowsInput(Clock& clock, Options options) : clock_(clock), options_(std::move(options)) {}

    // In pixels of the screens, whatever their scale; left of and above the first one negative.
    ScreenPoint GetCursorPos() override;
    void SetCursorPos(ScreenPoint point) override;

    // The button that means the left one to its user, also where the two are exchanged.
    void LeftButton(bool down) override;

    // Handles events between strokes, and sends nothing while the user presses a button of this
    // program, which may be the one that stops it. False also where Windows refuses: the screen is
    // locked, or the program in front runs with higher rights.
    bool SendKeys(const std::vector<KeyStroke>& keys) override;

private:
    bool Stopped() const { return options_.stop_requested && options_.stop_requested(); }
    // `held` is what stays down for the next stroke.
    bool SendStroke(const KeyStroke& stroke, unsigned& held);
    // Waits until the receiver has answered that many times. False to stop, or when it does not.
    bool WaitForAnswers(int answers);
    // Handles events, and waits while the user presses something of this program. False to stop.
    bool LetTheUserAct();

    Clock& clock_;
    Options options_;
    int unprocessed_ = 0;  // messages that have been sent since the receiver was waited for
};

}  // namespace tamrin
