#pragma once

#include <windows.h>

#include <vector>

#include "platform/document.h"
#include "platform/explorer/explorer_document.h"
#include "platform/geometry.h"

namespace tamrin {

// The elements at a point of the screen in the page that `content` shows: the frames that lead
// there, the outermost first, and last the element itself. Empty where another window lies there.
std::vector<Element> ElementsAt(ScreenPoint point, HWND content, ExplorerDocument& page);

}  // namespace tamrin
