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

// The element that a recording would tell of when the user acts on this one: it or the nearest one
// around it that is a button, a link or a field; where there is none, the element itself.
Element RecordedElement(const Element& element);

// The record of an element as it is now: a click on a button or a link, the input of a field. ""
// when an element of that kind leaves none.
std::string RecordOfElement(const Element& element);

}  // namespace tamrin
