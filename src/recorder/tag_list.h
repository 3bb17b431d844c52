#pragma once

#include <string>
#include <vector>

#include "platform/document.h"

namespace tamrin {

// The elements of a page as they are listed: each element's number from 1, tag, type, id or name,
// and value, parted by tabs.
struct TagList {
    std::vector<std::string> lines;
    std::vector<Element> elements;  // in the same order
};

// Lists all elements of a page, in one round trip.
TagList ListTags(const Document& document);

}  // namespace tamrin
