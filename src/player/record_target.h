#pragma once

#include <string_view>

#include "platform/document.h"

namespace tamrin {

// By what the player finds the element of a record. The first five are FindElement's searches, with
// their numbers.
enum class FoundBy {
    kNothing,
    kTypeAndValue,
    kNameAndType,
    kId,
    kName,
    kFormField,
    kRadioValue,
    kValue,
    kLinkText,
    kLinkAddress,
};

struct RecordTarget {
    FoundBy by = FoundBy::kNothing;
    Element element;  // null when there is none
    int count = 0;    // how many elements of its page that search accepts
};

// The element on which the playing of a record acts: its keys are looked for in the page, then in
// its frames, and those of a link among the links first. The page is left as it is.
RecordTarget FindRecordTarget(const Document& document, std::string_view record);

}  // namespace tamrin
