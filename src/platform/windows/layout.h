#pragma once

#include <windows.h>

#include "platform/form.h"

namespace tamrin {

// Dots per inch of the pixels in which the tables of the forms are written.
inline constexpr int kTableDpi = 96;

// A length of the tables in pixels of a screen with `dpi` dots per inch.
inline int Scaled(int length, int dpi) { return MulDiv(length, dpi, kTableDpi); }

// Converts a place from pixels of a screen with `from` dots per inch to one with `to`.
Place Rescaled(const Place& place, int from, int to);

// The place of a control at one size of its form's client area, in screen pixels. Its place at any
// other size follows from it.
struct Anchor {
    Place place;
    SIZE client;
};

// The place of a control at the size `client` of its form.
Place Stretched(const Anchor& anchor, unsigned stretch, SIZE client);

// The part of the nearest monitor that the task bar leaves to windows, in the coordinates of
// WINDOWPLACEMENT: these begin at the corner of that part.
RECT WorkArea(const Place& near_to);

// The place, at least `minimum` wide and high, moved and where it must be shrunk to lie wholly in
// the area.
Place Fitted(const Place& window, SIZE minimum, const RECT& area);

// The place of a window of that size in the middle of `around`.
Place Centered(const Place& window, const Place& around);

}  // namespace tamrin
