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
    // The value of a radio button without an id of its own, which its name alone does not tell from
    // the others of its group.
    std::string radio_value = {};

    bool operator==(const EventValue&) const = default;
};

// What an event ("click" or "input") on the watched element leaves a record of; nothing when it
// leaves none. A click is one on a submit, button or image input, or on a link: the element without
// a type that is `active`, or its parent, has an href. "input" is the leaving of a field.
std::optional<EventValue> ReadEvent(std::string_view event, const Element& watched,
                                    std::string_view type, const Element& active);

// The form in which a record holds a text: encoded (EncodeItemValue), without blanks at the ends,
// and with a blank for each tab, which no record can hold.
std::string CleanValue(std::string_view text);

// The lines of an element's event and of the page that a recording begins with. That of a radio
// button with a radio_value has it as an item "value" behind the others.
std::string BuildEventRecord(std::string_view id, const EventValue& read, std::string_view event);
std::string BuildUrlRecord(const WindowState& window, std::string_view address);

}  // namespace tamrin
