#include "browser/find_element.h"

#include "browser/element_keys.h"
#include "platform/text.h"

namespace tamrin {
namespace {

Element FirstOfType(const Document& document, std::string_view type, std::string_view indt) {
    for (const Element& element : document.getElementsByTagName("*")) {
        if (EqualsIgnoreCase(GetElementType(element), type) &&
            (indt.empty() || EqualsIgnoreCase(GetValue(element), indt))) {
            return element;
        }
    }
    return Element();
}

Element FirstNamed(const NamedElements& named, std::string_view type) {
    for (const Element& element : named.by_name) {
        const bool wanted = type.empty() ? EqualsIgnoreCase(element.tagName(), "INPUT")
                                         : EqualsIgnoreCase(GetAttr(element, "type"), type);
        if (wanted) return element;
    }
    return Element();
}

bool IsHidden(const std::string& type) { return EqualsIgnoreCase(type, "hidden"); }

}  // namespace

Element FindElement(const Document& document, std::string_view id, std::string_view type,
                    std::string_view indt) {
    if (id.empty() && !type.empty()) {
        if (Element element = FirstOfType(document, type, indt)) return element;
    }
    const NamedElements named = document.Named(id);
    if (Element element = FirstNamed(named, type)) return element;
    if (named.by_id && !IsHidden(GetElementType(named.by_id))) return named.by_id;
    // Here a hidden element serves, too: scenarios rely on reaching hidden fields by their name.
    if (!named.by_name.empty()) return named.by_name.front();
    for (const Element& element : named.in_forms) {
        if (!IsHidden(GetAttr(element, "type"))) return element;
    }
    return Element();
}

Element FindByValue(const Document& document, std::string_view tag, std::string_view indt) {
    for (const Element& element : document.getElementsByTagName(tag)) {
        if (EqualsIgnoreCase(GetValue(element), indt)) return element;
    }
    return Element();
}

Element FindThroughFrames(const Document& document,
                          const std::function<Element(const Document&)>& find) {
    if (Element element = find(document)) return element;
    for (const Frame& frame : document.frames()) {
        if (!frame.document) continue;
        if (Element element = find(frame.document)) return element;
    }
    return Element();
}

}  // namespace tamrin
