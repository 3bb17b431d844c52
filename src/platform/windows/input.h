#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/input.h"

namespace tamrin {

// The mouse and the keyboard of this computer (SendInput). Keys go to the window with the focus, as
// if the user had typed them.
//
// Text is sent as characters and not as keys, so that neither an open input method nor CapsLock
// changes it. Sent as keys are named keys, the space, which also presses buttons, and anything with
// Ctrl or Alt. Shift, Ctrl, Alt and Windows keys that the user holds down are released before the
// first stroke or click that does not want them.
//
// Windows does not notify when a program has processed a key. But a program answers a sent message
// before it takes the next one from its queue, and not while it works on one. So it is asked once
// more than the keys are messages, with a short pause in which it takes the next. Work that the
// program defers may still be pending then.
class WindowsInput : public Input {
public:
    struct Options {
        // Whether to stop sending; asked between strokes. Null: never.
        std::function<bool()> stop_requested;
        // Timeout for the program that receives the keys; after it the rest is not sent.
        int answer_limit_ms = 10000;
    };

    WindowsInput(Clock& clock, Options options) : clock_(clock), options_(std::move(options)) {}

    // In physical pixels; negative to the left of the first screen and above it.
    ScreenPoint GetCursorPos() override;
    void SetCursorPos(ScreenPoint point) override;

    // The user's left button: the right one where the user has swapped the two.
    void LeftButton(bool down) override;

    // Handles events between strokes, and sends nothing while the user presses a button of this
    // program: it may be Stop. Also false when Windows refuses the keys: the screen is locked, or
    // the program in front runs with higher rights.
    bool SendKeys(const std::vector<KeyStroke>& keys) override;

private:
    bool Stopped() const { return options_.stop_requested && options_.stop_requested(); }
    // `held` are the modifiers that stay down for the next stroke.
    bool SendStroke(const KeyStroke& stroke, unsigned& held);
    // Waits until the receiver has answered that many times. False on a stop or a timeout.
    bool WaitForAnswers(int answers);
    // Handles events, and waits while the user presses a button of this program. False on a stop.
    bool LetTheUserAct();

    Clock& clock_;
    Options options_;
    int unprocessed_ = 0;  // messages sent since the last wait for the receiver
};

}  // namespace tamrin
