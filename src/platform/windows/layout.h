#pragma once

#include <windows.h>

#include "platform/form.h"

namespace tamrin {

// Dots per inch of the pixels in which the tables of the forms are written.
inline constexpr int kTableDpi = 96;

// A length of the tables in pixels of a screen with `dpi` dots per inch.
inline int Scaled(int length, int dpi) { return MulDiv(length, dpi, kTableDpi); }

// A place in pixels of a screen with `from` dots per inch, in those of one with `to`.
Place Rescaled(const Place& place, int from, int to);

// Where a control stood when the client area of its form had a certain size, all in pixels of the
// screen. From that it follows where it stands at any other size.
struct Anchor {
    Place place;
    SIZE client;
};

// The place of a control at the size `client` of its form.
Place Stretched(const Anchor& anchor, unsigned stretch, SIZE client);

// The screen rectangle of a window of that size in the middle of `around`, moved on the monitor
// there as far as it fits.
Place Centered(const Place& window, const Place& around);

}  // namespace tamrin
