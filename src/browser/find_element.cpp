#include "browser/find_element.h"

#include <utility>

#include "browser/element_keys.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// What a search has accepted so far.
class Found {
public:
    // `count_all` for a search that goes on behind the first element.
    explicit Found(bool count_all) : count_all_(count_all) {}

    // Takes an element that the search of that number accepts. True when no more are wanted.
    bool Take(int search, const Element& element) {
        if (found_.count++ == 0) {
            found_.search = search;
            found_.element = element;
        }
        return !count_all_;
    }

    explicit operator bool() const { return found_.count > 0; }
    FoundElement Answer() { return std::move(found_); }

private:
    const bool count_all_;
    FoundElement found_;
};

void FindByType(const Document& document, std::string_view type, std::string_view indt,
                Found& found) {
    for (const Element& element : document.getElementsByTagName("*")) {
        if (EqualsIgnoreCase(GetElementType(element), type) &&
            (indt.empty() || EqualsIgnoreCase(GetValue(element), indt)) && found.Take(1, element)) {
            return;
        }
    }
}

void FindNamed(const NamedElements& named, std::string_view type, Found& found) {
    for (const Element& element : named.by_name) {
        const bool wanted = type.empty() ? EqualsIgnoreCase(element.tagName(), "INPUT")
                                         : EqualsIgnoreCase(GetAttr(element, "type"), type);
        if (wanted && found.Take(2, element)) return;
    }
}

bool IsHidden(const std::string& type) { return EqualsIgnoreCase(type, "hidden"); }

void FindInForms(const NamedElements& named, Found& found) {
    for (const Element& element : named.in_forms) {
        if (!IsHidden(GetAttr(element, "type")) && found.Take(5, element)) return;
    }
}

FoundElement Search(const Document& document, std::string_view id, std::string_view type,
                    std::string_view indt, bool count_all) {
    Found found(count_all);
    if (id.empty() && !type.empty()) FindByType(document, type, indt, found);
    if (found) return found.Answer();
    const NamedElements named = document.Named(id);
    FindNamed(named, type, found);
    if (!found && named.by_id && !IsHidden(GetElementType(named.by_id))) {
        found.Take(3, named.by_id);
    }
    if (found) return found.Answer();
    // Here a hidden element serves, too: scenarios rely on reaching hidden fields by their name.
    for (const Element& element : named.by_name) {
        if (found.Take(4, element)) break;
    }
    if (!found) FindInForms(named, found);
    return found.Answer();
}

}  // namespace

Element FindElement(const Document& document, std::string_view id, std::string_view type,
                    std::string_view indt) {
    return Search(document, id, type, indt, false).element;
}

FoundElement CountElements(const Document& document, std::string_view id, std::string_view type,
                           std::string_view indt) {
    return Search(document, id, type, indt, true);
}

Element FindRadio(const Document& document, std::string_view group, std::string_view value) {
    for (const Element& button : document.Named(group).by_name) {
        if (button.value() == value && EqualsIgnoreCase(GetElementType(button), "radio")) {
            return button;
        }
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
