#pragma once

namespace tamrin {

// A point in screen pixels.
struct ScreenPoint {
    int x = 0;
    int y = 0;

    bool operator==(const ScreenPoint&) const = default;
};

// A rectangle in pixels. Which pixels (of the screen, of the page's viewport) is said where it is
// used.
struct Rect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    bool operator==(const Rect&) const = default;
};

}  // namespace tamrin
