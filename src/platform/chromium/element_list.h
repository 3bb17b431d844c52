#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/chromium/chromium_element.h"
#include "platform/chromium/field_block.h"
#include "platform/document.h"

namespace tamrin {

class ChromiumDocument;

// The elements that one lookup found, with all that it told about them. The elements handed out
// share the list: a lookup of many allocates once for all of them.
class ElementList : public std::enable_shared_from_this<ElementList> {
public:
    // The fields of a row, in the order in which the page agent writes them.
    enum Key : std::size_t {
        kNumber,
        kId,
        kName,
        kTagName,
        kValue,
        kHref,
        kType,
        kAlt,
        kOnclick,
        kKeys,
        // Rows of Named go on with:
        kChecked = kKeys,
        kSelectedIndex,
        kLength,
        kPlace = kLength + 1,  // left, top, right, bottom, and the corner's two coordinates
        kNamedKeys = kPlace + 6,
        // Rows of a moment have the state of Named, and go on with:
        kSourceAttribute = kLength + 1,
        kSource,
        kMomentText,
        kMomentKeys,
        // Rows of links go on with:
        kInnerText = kKeys,
        // Rows of frames go on with:
        kFrameIndex = kKeys,
    };
    enum class Kind { kPlain, kNamed, kLinks, kFrames, kMoment };

    // How many fields describe a page's viewport.
    static constexpr std::size_t kViewport = 8;
    // What precedes the rows of Named: three counts and the viewport.
    static constexpr std::size_t kNamedHeader = 3 + kViewport;

    // `fields` holds `count` rows from the field `first` on.
    ElementList(std::shared_ptr<ChromiumDocument> document, FieldBlock fields, Kind kind,
                std::size_t first, std::size_t count);

    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    std::shared_ptr<ChromiumElement> At(std::size_t row);
    // The rows from `from` up to but without `to`.
    std::vector<Element> Elements(std::size_t from, std::size_t to);
    std::vector<Element> Elements() { return Elements(0, rows_.size()); }
    std::size_t size() const { return rows_.size(); }

    ChromiumDocument& document() const { return *document_; }
    const FieldBlock& fields() const { return fields_; }
    std::size_t Field(std::size_t row, std::size_t key) const { return first_ + row * keys_ + key; }
    Kind kind() const { return kind_; }
    // The tab's moment when the list was made.
    std::uint64_t moment() const { return moment_; }

private:
    const std::shared_ptr<ChromiumDocument> document_;
    const FieldBlock fields_;
    const Kind kind_;
    const std::size_t first_;
    const std::size_t keys_;
    const std::uint64_t moment_;
    std::vector<ChromiumElement> rows_;
};

}  // namespace tamrin
