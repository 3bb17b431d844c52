#include "platform/windows/layout.h"

#include <algorithm>

namespace tamrin {
namespace {

// Moves a span into the range, and shortens one that is longer.
void FitSpan(int& start, int& length, LONG range_start, LONG range_end) {
    length = std::min(length, static_cast<int>(range_end - range_start));
    start = std::clamp(start, static_cast<int>(range_start), static_cast<int>(range_end) - length);
}

}  // namespace

Place Rescaled(const Place& place, int from, int to) {
    // By their edges: places that touch go on touching.
    const int left = MulDiv(place.left, to, from);
    const int top = MulDiv(place.top, to, from);
    return {left, top, MulDiv(place.left + place.width, to, from) - left,
            MulDiv(place.top + place.height, to, from) - top};
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

RECT WorkArea(const Place& near_to) {
    const RECT rectangle{near_to.left, near_to.top, near_to.left + near_to.width,
                         near_to.top + near_to.height};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&rectangle, MONITOR_DEFAULTTONEAREST), &monitor);
    RECT area = monitor.rcWork;
    OffsetRect(&area, monitor.rcMonitor.left - area.left, monitor.rcMonitor.top - area.top);
    return area;
}

Place Fitted(const Place& window, SIZE minimum, const RECT& area) {
    Place place = window;
    place.width = std::max(place.width, static_cast<int>(minimum.cx));
    place.height = std::max(place.height, static_cast<int>(minimum.cy));
    FitSpan(place.left, place.width, area.left, area.right);
    FitSpan(place.top, place.height, area.top, area.bottom);
    return place;
}

Place Centered(const Place& window, const Place& around) {
    return {around.left + (around.width - window.width) / 2,
            around.top + (around.height - window.height) / 2, window.width, window.height};
}

}  // namespace tamrin
