#include "platform/explorer/page_geometry.h"

#include <cmath>

#include "platform/explorer/explorer_element.h"

namespace tamrin {
namespace {

// The deepest nesting of frames that is followed; a page that contains itself has no end.
constexpr int kMaxDepth = 20;

// Screen pixels per pixel of the page: the zoom, and the screen's resolution where the page counts
// in logical pixels.
double ScaleOf(ExplorerDocument& page) {
    const DispatchObject window = page.Window();
    if (!window) return 1;
    const DispatchObject screen = page.ObjectOf(window.Get("screen"), "screen");
    const double device = screen.Get("deviceXDPI").Number().value_or(0);
    const double logical = screen.Get("logicalXDPI").Number().value_or(0);
    return device > 0 && logical > 0 ? device / logical : 1;
}

struct PagePoint {
    double x = 0;
    double y = 0;
};

// Where a frame's page begins, which is inside the frame's border.
PagePoint InsideOf(const Element& frame, const Rect& place) {
    const DispatchObject& object = ExplorerElement::Of(frame)->object();
    return {place.left + object.Get("clientLeft").Number().value_or(0),
            place.top + object.Get("clientTop").Number().value_or(0)};
}

Variant Whole(double number) { return Variant(static_cast<int>(std::floor(number))); }

}  // namespace

std::optional<ScreenPoint> ScreenPointOf(const Element& element, HWND content) {
    const auto place = element.getBoundingClientRect();
    if (!place) return std::nullopt;
    PagePoint at{place->left, place->top};
    // Kept here: an event during a call can release the page that holds the frame.
    auto page = ExplorerElement::Of(element)->page().shared_from_this();
    while (const Element holder = page->holder()) {
        const auto outer = holder.getBoundingClientRect();
        if (!outer) return std::nullopt;
        const PagePoint inside = InsideOf(holder, *outer);
        at = {at.x + inside.x, at.y + inside.y};
        page = ExplorerElement::Of(holder)->page().shared_from_this();
    }
    const double scale = ScaleOf(*page);
    RECT window{};
    if (!GetWindowRect(content, &window)) return std::nullopt;
    return ScreenPoint{window.left + static_cast<int>(std::lround(at.x * scale)),
                       window.top + static_cast<int>(std::lround(at.y * scale))};
}

std::vector<Element> ElementsAt(ScreenPoint point, HWND content, ExplorerDocument& page) {
    std::vector<Element> found;
    RECT window{};
    if (!content || WindowFromPoint({point.x, point.y}) != content ||
        !GetWindowRect(content, &window))
        return found;
    const double scale = ScaleOf(page);
    PagePoint at{static_cast<double>(point.x - window.left) / scale,
                 static_cast<double>(point.y - window.top) / scale};
    auto shown = page.shared_from_this();
    for (int depth = 0; shown && depth < kMaxDepth; ++depth) {
        Element element =
            shown->ElementOf(shown->object().Call("elementFromPoint", Whole(at.x), Whole(at.y)));
        if (!element) break;
        found.push_back(element);
        if (element.tagName() != "IFRAME" && element.tagName() != "FRAME") break;
        const auto place = element.getBoundingClientRect();
        if (!place) break;
        const PagePoint inside = InsideOf(element, *place);
        at = {at.x - inside.x, at.y - inside.y};
        shown = PageInside(element);
    }
    return found;
}

}  // namespace tamrin
