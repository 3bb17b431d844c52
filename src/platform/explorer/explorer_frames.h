#pragma once

#include <vector>

#include "platform/explorer/explorer_document.h"

namespace tamrin {

// The frames of a page in the order of its window's. The page of a frame that refuses itself to
// scripts of another origin is reached by way of the frame's browser.
std::vector<Frame> FramesOf(ExplorerDocument& page);

// The page that an element which is a frame shows; null where it cannot be reached.
std::shared_ptr<ExplorerDocument> PageInside(const Element& frame);

}  // namespace tamrin
