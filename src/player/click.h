#pragma once

#include "platform/browser.h"
#include "platform/clock.h"
#include "player/player_host.h"
#include "state/globals.h"

namespace tamrin {

// The user's wait before an action, the clicks and the mouse pointer.
class Clicker {
public:
    Clicker(Globals& globals, Clock& clock, Input& input, PlayerHost& host)
        : globals_(globals), clock_(clock), input_(input), host_(host) {}

    // Waits `milliseconds` in steps of 100 ms and shows the seconds left, unless it is no multiple
    // of 100. True when the user skipped the rest of it (Globals::skip_wait).
    bool UserWait(int milliseconds);

    // Waits as above, clicks the element unless the user skipped the wait, and pauses 500 ms. False
    // when it was skipped.
    bool ClickElement(Browser& browser, const Element& element, bool real_click, int wait_ms);

    // Clicks at once: with the mouse pointer at the element's place on the screen, or by the
    // element's own method. An element that has no place on the screen is clicked by its method.
    void Press(Browser& browser, const Element& element, bool real_click);

    // Moves the mouse pointer onto the element.
    void PointAt(Browser& browser, const Element& element);

private:
    void RealClick(Browser& browser, ScreenPoint point);
    void MouseLeftClick();

    Globals& globals_;
    Clock& clock_;
    Input& input_;
    PlayerHost& host_;
};

}  // namespace tamrin
