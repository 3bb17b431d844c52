#pragma once

#include <string>
#include <string_view>

#include "platform/document.h"

namespace tamrin {

// By what a record names its element (see element_keys.h).
struct ElementKeys {
    std::string id;    // its id or its name
    std::string type;  // its type
    std::string indt;  // the record's input data: a value, or the text or the address of a link
    // The record's item "value": of a button without an id, the text that it shows. "" for any.
    std::string value = {};
};

// The search that found an element. Each is tried in the page and then in its frames, one level
// deep; all comparisons ignore letter case.
enum class FoundBy {
    kNothing,
    // The next five run one after the other on each page.
    kTypeAndValue,  // without an id: elements of that type and, unless `indt` is empty, that value
    kNameAndType,   // elements of that name and type; without a type, any INPUT of that name
    kId,            // the element with that id, unless hidden
    kName,          // elements of that name, a hidden field too
    kFormField,     // a form's field of that name or id, unless hidden
    kRadioValue,    // FindRadio
    kValue,         // an INPUT, and then any element, whose value is `indt`; not for a link
    kLinkText,      // links with that text
    kLinkAddress,   // the only link with that address
};

struct Found {
    FoundBy by = FoundBy::kNothing;
    Element element;  // the first that the search accepts; null when none does
    int count = 0;    // how many it accepts in that page; 1 at most where nobody asked for all
};

enum class Count { kFirst, kAll };

// Finds the element of a record. A record of type "href" is looked for among the links first: by
// its address when `indt` begins with "http://", "https://" or "ftp://", else by its text, white
// space folded. Links of the frames are looked for by address, then by text.
// An element in the page costs one round trip when the record has an id, two at most without one.
// Counting costs no round trips.
Found FindElement(const Document& document, const ElementKeys& keys, Count count = Count::kFirst);

// The radio button of that name and value, in the page or in its frames.
Found FindRadio(const Document& document, std::string_view group, std::string_view value);

}  // namespace tamrin
