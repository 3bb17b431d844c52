#include "platform/explorer/page_scale.h"

namespace tamrin {

double ScaleOf(ExplorerDocument& page) {
    const DispatchObject window = page.Window();
    if (!window) return 1;
    const DispatchObject screen = page.ObjectOf(window.Get("screen"), "screen");
    const double device = screen.Get("deviceXDPI").Number().value_or(0);
    const double logical = screen.Get("logicalXDPI").Number().value_or(0);
    return device > 0 && logical > 0 ? device / logical : 1;
}

}  // namespace tamrin
