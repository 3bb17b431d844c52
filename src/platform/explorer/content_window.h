#pragma once

#include <windows.h>

#include <optional>

#include "platform/document.h"
#include "platform/geometry.h"

namespace tamrin {

// The window in which a browser window shows its page; null when it has none. Of several the last
// one that has a height: the tabs behind the shown one have none.
HWND FindIeServerWindow(HWND browser);

// The screen point of an element's top left corner in the page that `content` shows, frames counted
// in. Nothing when the element is gone or not displayed.
std::optional<ScreenPoint> ScreenPointOf(const Element& element, HWND content);

}  // namespace tamrin
