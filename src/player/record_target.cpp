#include "player/record_target.h"

#include <string>

#include "browser/find_element.h"
#include "browser/find_link.h"
#include "platform/text.h"
#include "scenario/record.h"

namespace tamrin {
namespace {

// Several links of one address are none: which of them is meant?
RecordTarget FindLink(const Document& document, std::string_view target) {
    if (target.find("javascript") != std::string_view::npos) return {};
    const LinkMatch match = MatchLink(document, target);
    if (match.count != 1) return {};
    if (match.alike > 0) return {FoundBy::kLinkText, match.link, match.alike};
    return {FoundBy::kLinkAddress, match.link, 1};
}

RecordTarget FindByKeys(const Document& document, std::string_view id, std::string_view type,
                        std::string_view indt) {
    FoundElement found;
    FindThroughFrames(document, [&](const Document& page) {
        found = CountElements(page, id, type, indt);
        return found.element;
    });
    return {static_cast<FoundBy>(found.search), found.element, found.count};
}

RecordTarget FindByValueOf(const Document& document, std::string_view tag, std::string_view indt) {
    const Element element = FindThroughFrames(
        document, [&](const Document& page) { return FindByValue(page, tag, indt); });
    return element ? RecordTarget{FoundBy::kValue, element, 1} : RecordTarget();
}

}  // namespace

RecordTarget FindRecordTarget(const Document& document, std::string_view record) {
    const std::string type = GetRecordItem(record, "type");
    const std::string indt = DecodeItemValue(GetRecordItem(record, "indt"));
    RecordTarget target;
    if (EqualsIgnoreCase(type, "href")) target = FindLink(document, indt);
    if (!target.element) {
        target = FindByKeys(document, GetRecordItem(record, "id"), type, indt);
    }
    for (const char* tag : {"input", "*"}) {
        if (!target.element && !indt.empty()) target = FindByValueOf(document, tag, indt);
    }
    const std::string button = DecodeItemValue(GetRecordItem(record, "value"));
    if (target.element && !button.empty() && EqualsIgnoreCase(type, "radio")) {
        const std::string group = target.element.name();
        target = {
            FoundBy::kRadioValue,
            FindThroughFrames(document,
                              [&](const Document& page) { return FindRadio(page, group, button); }),
            1};
        if (!target.element) target = {};
    }
    return target;
}

}  // namespace tamrin
