#include "platform/windows/layout.h"

#include <algorithm>

namespace tamrin {
namespace {

// Moves a span into the range; one that is too long starts where the range does.
int MovedInto(int start, int length, LONG range_start, LONG range_end) {
    return std::max(static_cast<int>(range_start),
                    std::min(start, static_cast<int>(range_end) - length));
}

}  // namespace

Place Rescaled(const Place& place, int from, int to) {
    return {MulDiv(place.left, to, from), MulDiv(place.top, to, from),
            MulDiv(place.width, to, from), MulDiv(place.height, to, from)};
}

Place Stretched(const Anchor& anchor, unsigned stretch, SIZE client) {
    Place place = anchor.place;
    const int wider = static_cast<int>(client.cx - anchor.client.cx);
    const int taller = static_cast<int>(client.cy - anchor.client.cy);
    if ((stretch & kMoveRight) != 0) place.left += wider;
    if ((stretch & kMoveBottom) != 0) place.top += taller;
    if ((stretch & kStretchRight) != 0) place.width = std::max(0, place.width + wider);
    if ((stretch & kStretchBottom) != 0) place.height = std::max(0, place.height + taller);
    return place;
}

Place Centered(const Place& window, const Place& around) {
    Place place = window;
    place.left = around.left + (around.width - window.width) / 2;
    place.top = around.top + (around.height - window.height) / 2;
    const RECT rectangle{around.left, around.top, around.left + around.width,
                         around.top + around.height};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&rectangle, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;
    place.left = MovedInto(place.left, place.width, work.left, work.right);
    place.top = MovedInto(place.top, place.height, work.top, work.bottom);
    return place;
}

}  // namespace tamrin
