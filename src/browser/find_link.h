#pragma once

#include <optional>
#include <string_view>

#include "platform/document.h"

namespace tamrin {

// Whether a text begins with "https://", "http://" or "ftp://".
bool IsFullUrl(std::string_view text);

struct LinkMatch {
    int count = 0;   // how many links matched
    Element link;    // the match; the last one when there are several
    Element holder;  // the element of the frame that the match stands in; null in the page itself
    // Of a match by text, which is one always: how many links of its page have that text; else 0.
    int alike = 0;
    // Its place in CSS pixels of the browser's content window; FindLinkByHref tells it when exactly
    // one link matched.
    std::optional<Rect> rect;
};

// The link that a record names by its address or its text.
// A full address: every link with that href counts. Otherwise the first link with that text. When
// neither finds one: every link with that href in the frames of the page, then the first one there
// with that text.
LinkMatch MatchLink(const Document& document, std::string_view target);

// The same, and a single match is scrolled into view.
LinkMatch FindLinkByHref(const Document& document, std::string_view target);

}  // namespace tamrin
