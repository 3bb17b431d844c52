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

// The lines of an element's event and of the page that a recording begins with.
std::string BuildEventRecord(std::string_view id, std::string_view type, std::string_view value,
                             std::string_view event);
std::string BuildUrlRecord(const WindowState& window, std::string_view address);

}  // namespace tamrin
