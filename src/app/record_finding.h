#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "browser/find_element.h"
#include "platform/document.h"

namespace tamrin {

// The record of an element as a recording makes it, but of a password field without its content:
// what is not shown to the user is not handed on either.
std::string RecordWithoutPassword(const Element& element);

// What a run finds for a record, and how many elements the same search accepts.
Found FindByRecord(const Document& document, std::string_view line);

// Tells the user what a record finds.
struct Finding {
    Element element;              // whose record it is
    std::vector<Element> frames;  // around it, the outermost first
    Element pointed;              // the element under the pointer, maybe inside the other
    Found found;                  // what the record finds
};
std::string Describe(const Finding& finding);

}  // namespace tamrin
