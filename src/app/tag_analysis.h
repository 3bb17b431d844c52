#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "browser/find_element.h"
#include "platform/document.h"

namespace tamrin {

// What the tag analyzer shows of an element: its facts, its record, and what that record finds.
// Contents of password fields are never shown.

// The facts of an element, in the order in which they are shown.
enum Fact { kTag, kId, kName, kType, kValue, kHref, kForm, kFrames, kHtml, kFacts };
using ElementFacts = std::array<std::string, kFacts>;

// Facts of the element at the end of a path (Browser::UnderPointer). KeysOf reads those before
// kForm, and kFrames; they come with the path and cost no call. A path with the same keys as before
// still shows the same element. ReadOtherFacts needs up to five round trips.
ElementFacts KeysOf(const std::vector<Element>& path);
void ReadOtherFacts(const std::vector<Element>& path, ElementFacts& facts);

// HTML with dots in place of the value of each password field.
std::string HidePasswords(const std::string& html);

// The record of an element as a recording makes it, but without the content of a password field.
std::string RecordWithoutPassword(const Element& element);

// What a run finds for a record, and how many elements the same search accepts.
Found FindByRecord(const Document& document, std::string_view line);

// Tells the user what a record finds.
struct Finding {
    Element element;              // whose record it is
    std::vector<Element> frames;  // that contain it, the outermost first
    Element pointed;              // the element under the pointer, maybe inside `element`
    Found found;                  // what the record finds
};
std::string Describe(const Finding& finding);

}  // namespace tamrin
