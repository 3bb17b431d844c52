#pragma once

#include <functional>
#include <string_view>

#include "platform/document.h"

namespace tamrin {

// Finds the element that a record names by its keys (see element_keys.h); null when there is none.
// All comparisons ignore letter case. In this order:
// 1. without an id but with a type: the first element of the page of that type and, unless `indt`
//    is empty, of that value;
// 2. among the elements named `id`, the first of that type; without a type, the first INPUT;
// 3. the element whose id it is, unless hidden;
// 4. the first element named `id`;
// 5. the first field of that name or id in any form, unless hidden.
// A record with an id costs one round trip, one without an id two at most.
Element FindElement(const Document& document, std::string_view id, std::string_view type,
                    std::string_view indt);

// What one of these searches accepts in a page.
struct FoundElement {
    Element element;  // the first, which is the answer; null when no search accepts one
    int search = 0;   // its number as above, 0 when none does
    int count = 0;    // how many elements it accepts
};

// The same search, which goes on to count what else it accepts.
FoundElement CountElements(const Document& document, std::string_view id, std::string_view type,
                           std::string_view indt);

// The radio button of that name and value; null when there is none.
Element FindRadio(const Document& document, std::string_view group, std::string_view value);

// The first element with that tag ("*" for any) whose GetValue equals `indt`; null when none does.
Element FindByValue(const Document& document, std::string_view tag, std::string_view indt);

// Runs `find` on a document and, until one answers an element, on each of its frames' documents.
// Frames inside frames are not entered.
Element FindThroughFrames(const Document& document,
                          const std::function<Element(const Document&)>& find);

}  // namespace tamrin
