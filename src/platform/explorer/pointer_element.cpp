#include "platform/explorer/pointer_element.h"

#include <cmath>

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/explorer_frames.h"
#include "platform/explorer/page_scale.h"

namespace tamrin {
namespace {

// Frames in frames; a page that shows itself would have no end.
constexpr int kDeepest = 20;

Variant Whole(double number) { return Variant(static_cast<int>(std::floor(number))); }

}  // namespace

std::vector<Element> ElementsAt(ScreenPoint point, HWND content, ExplorerDocument& page) {
    std::vector<Element> found;
    RECT window{};
    if (!content || WindowFromPoint({point.x, point.y}) != content ||
        !GetWindowRect(content, &window))
        return found;
    const double scale = ScaleOf(page);
    double x = static_cast<double>(point.x - window.left) / scale;
    double y = static_cast<double>(point.y - window.top) / scale;
    auto at = page.shared_from_this();
    for (int depth = 0; at && depth < kDeepest; ++depth) {
        Element element = at->ElementOf(at->object().Call("elementFromPoint", Whole(x), Whole(y)));
        if (!element) break;
        found.push_back(element);
        if (element.tagName() != "IFRAME" && element.tagName() != "FRAME") break;
        const auto place = element.getBoundingClientRect();
        if (!place) break;
        // A frame's page begins inside its border.
        const DispatchObject& frame = ExplorerElement::Of(element)->object();
        x -= place->left + frame.Get("clientLeft").Number().value_or(0);
        y -= place->top + frame.Get("clientTop").Number().value_or(0);
        at = PageInside(element);
    }
    return found;
}

}  // namespace tamrin
