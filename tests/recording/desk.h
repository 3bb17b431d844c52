#pragma once

#include <string>
#include <vector>

#include "support/program.h"

namespace tamrin::test {

// A point of the screen, in pixels.
struct Point {
    int x = 0;
    int y = 0;
};

// An X display of its own with a window manager, and the hand of the user who sits at it: what it
// does arrives as if it came from mouse and keyboard. Programs that are started while it stands
// show their windows there. What cannot be done throws a std::runtime_error.
class Desk {
public:
    Desk();

    void Click(Point where) const;
    void MoveTo(Point where) const;
    // Strokes of keys as xdotool names them ("Tab", "shift+Tab", "a"), one after the other.
    void Press(const std::vector<std::string>& strokes) const;
    // Letters that the keyboard has.
    void Type(const std::string& text) const;
    // Letters as an input method makes them: first a composition in the field, which the browser
    // shows underlined, then its outcome. Each is named by the hexadecimal digits of its code.
    void Compose(const std::vector<std::string>& codes) const;

private:
    Program display_;
    Program window_manager_;
};

}  // namespace tamrin::test
