#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "platform/document.h"
#include "platform/explorer/explorer_document.h"
#include "platform/geometry.h"

namespace tamrin {

// From places in a page to places on the screen and back. `content` is the window that shows the
// top page. Frames, zoom and screen resolution are taken into account.

// The screen point of an element's top left corner. Nothing when the element is gone or not
// displayed.
std::optional<ScreenPoint> ScreenPointOf(const Element& element, HWND content);

// The elements at a point of the screen: the frames that lead there, the outermost first, and last
// the element itself. Empty when another window covers that point.
std::vector<Element> ElementsAt(ScreenPoint point, HWND content, ExplorerDocument& page);

}  // namespace tamrin
