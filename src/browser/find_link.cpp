#include "browser/find_link.h"

#include <string>
#include <utility>

#include "browser/element_keys.h"
#include "platform/text.h"

namespace tamrin {
namespace {

void CountByHref(const std::vector<Element>& links, std::string_view target, LinkMatch& match) {
    for (const Element& link : links) {
        const std::string href = GetHref(link);
        if (href.empty() || !EqualsIgnoreCase(href, target)) continue;
        ++match.count;
        match.link = link;
    }
}

// A link's text on one line, with one blank for each run of white space and none around it: a
// record writes its line ends and tabs otherwise than the page.
std::string Folded(std::string_view text) {
    constexpr std::string_view kWhite = " \t\r\n";
    std::string folded;
    folded.reserve(text.size());
    bool white = false;
    for (const char c : text) {
        const bool was_white = std::exchange(white, kWhite.find(c) != std::string_view::npos);
        if (white) continue;
        if (was_white && !folded.empty()) folded += ' ';
        folded += c;
    }
    return folded;
}

void TakeFirstByText(const std::vector<Element>& links, std::string_view target, LinkMatch& match) {
    const std::string text = Folded(target);
    for (const Element& link : links) {
        if (!EqualsIgnoreCase(Folded(link.innerText()), text)) continue;
        if (match.alike++ > 0) continue;
        match.count = 1;
        match.link = link;
    }
}

using Match = void (*)(const std::vector<Element>& links, std::string_view target,
                       LinkMatch& match);

// Matches the links of each frame and keeps the frame element that holds the last match. A text is
// looked for in the frames behind its first match no more.
void MatchInFrames(const std::vector<Frame>& frames, Match match_links, std::string_view target,
                   LinkMatch& match) {
    for (const Frame& frame : frames) {
        const int before = match.count;
        match_links(frame.document.links(), target, match);
        if (match.count > before) match.holder = frame.element;
        if (match.alike > 0) return;
    }
}

}  // namespace

bool IsFullUrl(std::string_view text) {
    return text.starts_with("https://") || text.starts_with("http://") ||
           text.starts_with("ftp://");
}

LinkMatch MatchLink(const Document& document, std::string_view target) {
    LinkMatch match;
    const std::vector<Element> links = document.links();
    if (IsFullUrl(target)) {
        CountByHref(links, target, match);
    } else {
        TakeFirstByText(links, target, match);
    }
    if (match.count > 0) return match;
    const std::vector<Frame> frames = document.frames();
    MatchInFrames(frames, CountByHref, target, match);
    if (match.count == 0 && !IsFullUrl(target)) {
        MatchInFrames(frames, TakeFirstByText, target, match);
    }
    return match;
}

LinkMatch FindLinkByHref(const Document& document, std::string_view target) {
    LinkMatch match = MatchLink(document, target);
    if (match.count != 1) return match;
    match.link.scrollIntoView();
    match.rect = match.link.getBoundingClientRect();
    if (match.rect && match.holder) {
        const Rect outer = match.holder.getBoundingClientRect().value_or(Rect());
        match.rect->left += outer.left;
        match.rect->top += outer.top;
        match.rect->right += outer.left;
        match.rect->bottom += outer.top;
    }
    return match;
}

}  // namespace tamrin
