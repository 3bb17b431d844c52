#pragma once

#include <string>
#include <vector>

#include "platform/geometry.h"

namespace tamrin {

// One key stroke. Either a character (`text`, one UTF-8 character) or a named key (`name`, as in
// the key string without braces and in capitals: "ENTER", "TAB", "F5", ...), with the keys that are
// held down meanwhile.
struct KeyStroke {
    std::string text;
    std::string name;
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    // Whether those keys stay down for the next stroke, as over a group of keys or a repeated one.
    // To go from window to window by Alt+Tab takes that.
    bool holds_on = false;

    bool operator==(const KeyStroke&) const = default;
};

// The mouse and the keyboard. Input goes to whatever has the focus, as a person's would.
class Input {
public:
    virtual ~Input() = default;

    // Where the mouse pointer is.
    virtual ScreenPoint GetCursorPos() = 0;

    // Moves the mouse pointer.
    virtual void SetCursorPos(ScreenPoint point) = 0;

    // Presses or releases the left mouse button where the pointer is.
    virtual void LeftButton(bool down) = 0;

    // Sends key strokes in order and returns when they have been processed, or when something stops
    // that: a dialog box opened by one of them, the end of the browser. Events may be handled
    // between them. False when not all could be sent, or the user has stopped it.
    virtual bool SendKeys(const std::vector<KeyStroke>& keys) = 0;
};

}  // namespace tamrin
