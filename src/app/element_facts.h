#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/document.h"

namespace tamrin {

// What is told of an element, in the order in which it is shown.
enum Fact { kTag, kId, kName, kType, kValue, kHref, kForm, kFrames, kHtml, kFacts };
using ElementFacts = std::array<std::string, kFacts>;

// Facts of the element at the end of a path (Browser::UnderPointer). Of a password there are only
// dots, also in the HTML.
//
// The keys come with the path and cost nothing; a path that is told with the same keys as before
// still shows the same element. The other facts take up to five round trips.
ElementFacts KeysOf(const std::vector<Element>& path);
void ReadOtherFacts(const std::vector<Element>& path, ElementFacts& facts);

// HTML with dots in place of the value of each password field.
std::string HidePasswords(const std::string& html);

}  // namespace tamrin
