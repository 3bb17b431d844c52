#pragma once

#include <string>
#include <vector>

#include "platform/document.h"
#include "player/record_target.h"

namespace tamrin {

// The record of an element as a recording makes it, but of a password field without its content:
// what is not shown to the user is not handed on either.
std::string RecordWithoutPassword(const Element& element);

// Tells the user what a record finds.
struct Finding {
    Element element;              // of which the record is
    std::vector<Element> frames;  // in which that stands, the outermost first
    Element pointed;              // the element under the pointer, maybe inside the other
    RecordTarget target;          // what the record finds
};
std::string Describe(const Finding& finding);

}  // namespace tamrin
