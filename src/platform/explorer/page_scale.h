#pragma once

#include "platform/explorer/explorer_document.h"

namespace tamrin {

// Screen pixels for a pixel of the page: the zoom, and the screen's resolution where the page
// counts in its own.
double ScaleOf(ExplorerDocument& page);

}  // namespace tamrin
