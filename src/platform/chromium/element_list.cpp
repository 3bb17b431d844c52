#include "platform/chromium/element_list.h"

#include <algorithm>

#include "platform/chromium/chromium_document.h"

namespace tamrin {
namespace {

std::size_t KeysOf(ElementList::Kind kind) {
    switch (kind) {
        case ElementList::Kind::kPlain:
            return ElementList::kKeys;
        case ElementList::Kind::kNamed:
            return ElementList::kNamedKeys;
        case ElementList::Kind::kMoment:
            return ElementList::kMomentKeys;
        case ElementList::Kind::kLinks:
        case ElementList::Kind::kFrames:
            return ElementList::kKeys + 1;
    }
    return ElementList::kKeys;
}

}  // namespace

ElementList::ElementList(std::shared_ptr<ChromiumDocument> document, FieldBlock fields, Kind kind,
                         std::size_t first, std::size_t count)
    : document_(std::move(document)),
      fields_(std::move(fields)),
      kind_(kind),
      first_(first),
      keys_(KeysOf(kind)),
      moment_(document_->tab().moment()) {
    const std::size_t whole_rows =
        fields_.size() > first_ ? (fields_.size() - first_) / keys_ : std::size_t{0};
    rows_.reserve(std::min(count, whole_rows));
    for (std::size_t row = 0; row < rows_.capacity(); ++row) rows_.emplace_back(*this, row);
}

std::shared_ptr<ChromiumElement> ElementList::At(std::size_t row) {
    return {shared_from_this(), &rows_[row]};
}

std::vector<Element> ElementList::Elements(std::size_t from, std::size_t to) {
    std::vector<Element> elements;
    to = std::min(to, rows_.size());
    if (from >= to) return elements;
    elements.reserve(to - from);
    for (std::size_t row = from; row < to; ++row) elements.emplace_back(At(row));
    return elements;
}

}  // namespace tamrin
