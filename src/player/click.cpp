#include "player/click.h"

#include <algorithm>

#include "browser/wait.h"

namespace tamrin {
namespace {

// A click lands this far right of and below an element's top left corner, in pixels, inside the
// element's border and clear of its neighbours; an element too small for that is clicked in its
// middle.
constexpr double kInset = 10;

ScreenPoint ClickPoint(ScreenPoint corner, const Element& element) {
    const auto rect = element.getBoundingClientRect();
    const auto inset = [&](double size) {
        return static_cast<int>(rect ? std::min(kInset, size / 2) : kInset);
    };
    return {corner.x + inset(rect ? rect->right - rect->left : 0),
            corner.y + inset(rect ? rect->bottom - rect->top : 0)};
}

bool Inside(ScreenPoint point, const Rect& rect) {
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top &&
           point.y < rect.bottom;
}

}  // namespace

bool Clicker::UserWait(int milliseconds) {
    globals_.skip_wait = false;
    int left = milliseconds;
    while (!globals_.activity.empty() && left > 0 && !globals_.skip_wait) {
        WaitMs(clock_, globals_, 100);
        left -= 100;
        if (left % 100 == 0) host_.SetStatus(std::to_string(left / 1000 + 1));
    }
    if (milliseconds > 0) host_.SetStatus("");
    return globals_.skip_wait;
}

bool Clicker::ClickElement(Browser& browser, const Element& element, bool real_click, int wait_ms) {
    const bool skipped = UserWait(wait_ms);
    if (!skipped && !globals_.activity.empty()) Press(browser, element, real_click);
    WaitMs(clock_, globals_, 500);
    return !skipped;
}

void Clicker::Press(Browser& browser, const Element& element, bool real_click) {
    if (real_click) {
        element.scrollIntoView();
        if (const auto corner = browser.ElementScreenPoint(element)) {
            RealClick(browser, ClickPoint(*corner, element));
            return;
        }
    }
    browser.SetForeground();
    element.click();
}

void Clicker::PointAt(Browser& browser, const Element& element) {
    if (const auto corner = browser.ElementScreenPoint(element)) {
        input_.SetCursorPos(ClickPoint(*corner, element));
    }
}

void Clicker::RealClick(Browser& browser, ScreenPoint point) {
    const ScreenPoint before = input_.GetCursorPos();
    // The main window may lie over the element; the click must reach the browser.
    const auto window = host_.WindowRect();
    const bool covered = window && Inside(point, *window);
    if (covered) host_.SetWindowVisible(false);
    browser.SetForeground();
    clock_.DoEvents();
    clock_.Sleep(100);
    clock_.DoEvents();
    // A click that is no longer wanted would reach whatever stands there now.
    const bool clicks = !globals_.activity.empty() && browser.Alive();
    if (clicks) {
        input_.SetCursorPos(point);
        browser.SetForeground();
        MouseLeftClick();
    }
    if (covered) host_.SetWindowVisible(true);
    if (clicks) input_.SetCursorPos(before);
}

void Clicker::MouseLeftClick() {
    input_.LeftButton(true);
    input_.LeftButton(false);
    clock_.DoEvents();
    WaitMs(clock_, globals_, 100);
}

}  // namespace tamrin
