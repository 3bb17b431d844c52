#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/document.h"

namespace tamrin {

struct WindowState;

// What a record keeps of an event besides the element's id.
struct EventValue {
    std::string type;
    std::string value;  // cleaned
    // What tells it from others of the same keys, cleaned: the value of a radio button without an
    // id, the text of a button without id, name and value.
    std::string mark = {};

    bool operator==(const EventValue&) const = default;
};

// What is recorded of an event ("click" or "input") on the watched element; nothing when the event
// is not recorded. "click" is recorded of a submit, button or image input, and of a link: `active`
// is an element without a type, and it or its parent has an href. "input" is the leaving of a
// field; not of a file field or a select in which nothing is chosen, which cannot be played.
std::optional<EventValue> ReadEvent(std::string_view event, const Element& watched,
                                    std::string_view type, const Element& active);

// Whether it is a chosen file whose place the browser keeps to itself.
bool HidesPath(const EventValue& read);

// The form in which a record holds a text: encoded (EncodeItemValue), without blanks at the ends,
// and with a blank for each tab, which no record can hold.
std::string CleanValue(std::string_view text);

// The record of an element's event, and of the page with which a recording begins. A mark is an
// item "value" behind the others.
std::string BuildEventRecord(std::string_view id, const EventValue& read, std::string_view event);
std::string BuildUrlRecord(const WindowState& window, std::string_view address);

// The element that would be recorded when the user acts on this one: it or the nearest one around
// it that is a button, a link or a field; where there is none, the element itself.
Element RecordedElement(const Element& element);

// The record of an element as it is now: a click on a button or a link, the input of a field. ""
// when nothing is recorded of such an element.
std::string RecordOfElement(const Element& element);

}  // namespace tamrin
