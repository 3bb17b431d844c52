#include "browser/element_keys.h"

#include <utility>

#include "platform/text.h"

namespace tamrin {

std::string GetElementId(const Element& element) {
    std::string id = element.id();
    return id.empty() ? element.name() : id;
}

std::string GetElementType(const Element& element) {
    if (auto type = element.getAttribute("type")) return *std::move(type);
    return GetHref(element).empty() ? std::string() : "href";
}

std::string GetValue(const Element& element) {
    std::string value = element.value();
    return value.empty() ? GetAttr(element, "alt") : value;
}

bool IsPassword(const Element& element) {
    return EqualsIgnoreCase(GetElementType(element), "password");
}

std::string ShownValue(std::string_view type, std::string value) {
    return !value.empty() && EqualsIgnoreCase(type, "password") ? kDots : std::move(value);
}

bool IsScript(std::string_view indt) { return indt.find("javascript:") != std::string_view::npos; }

std::string GetAttr(const Element& element, std::string_view attribute) {
    return element.getAttribute(attribute).value_or(std::string());
}

std::string GetHref(const Element& element) { return GetAttr(element, "href"); }

std::string GetElementName(const Element& element) { return element.name(); }

std::string GetTagName(const Element& element) { return element.tagName(); }

std::string GetFormName(const Element& element) {
    std::string name = element.form().name();
    if (name.empty()) {
        const Element parent = element.parentElement();
        if (parent.tagName() == "FORM") name = parent.id();
    }
    // A form with a field called "name" (or "id") answers that field in place of its own name.
    return name == "[object]" ? std::string() : name;
}

bool IsFrameElement(const Element& element) {
    const std::string tag = element.tagName();
    return EqualsIgnoreCase(tag, "IFRAME") || EqualsIgnoreCase(tag, "FRAME");
}

}  // namespace tamrin
