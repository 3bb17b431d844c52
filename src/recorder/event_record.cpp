#include "recorder/event_record.h"

#include "browser/element_keys.h"
#include "browser/element_types.h"
#include "platform/browser.h"
#include "platform/text.h"
#include "scenario/record.h"

namespace tamrin {
namespace {

// A text with CR LF for each line end, however the page writes it.
std::string WithLineEnds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '\n' && !result.ends_with('\r')) result += '\r';
        result += c;
    }
    return result;
}

std::string VisibleText(const Element& element) {
    return CleanValue(Trim(element.innerText(), kWhiteSpace));
}

std::optional<EventValue> ReadLinkClick(const Element& active) {
    std::string href = GetHref(active);
    if (href.empty()) href = GetHref(active.parentElement());
    if (href.empty()) return std::nullopt;
    std::string text = VisibleText(active);
    return EventValue{"href", text.empty() ? std::move(href) : std::move(text)};
}

std::optional<EventValue> ReadClick(const Element& watched, std::string_view type,
                                    const Element& active) {
    switch (KindOf(type)) {
        case ElementKind::kButton:
        case ElementKind::kImage:
        case ElementKind::kSubmit: {
            std::string value = CleanValue(GetValue(watched));
            if (value.empty()) value = GetAttr(watched, "src");
            const bool keyless = value.empty() && GetElementId(watched).empty();
            return EventValue{std::string(type), std::move(value),
                              keyless ? VisibleText(watched) : std::string()};
        }
        case ElementKind::kLink:
        case ElementKind::kUntyped:
            return ReadLinkClick(active);
        default:
            return std::nullopt;
    }
}

std::string RadioValue(const Element& button, std::string_view type) {
    const bool by_name = EqualsIgnoreCase(type, "radio") && button.id().empty();
    return by_name ? CleanValue(button.value()) : std::string();
}

std::optional<EventValue> ReadInput(const Element& watched, std::string_view type) {
    switch (KindOf(type)) {
        case ElementKind::kCheck:
            return EventValue{std::string(type), watched.checked(), RadioValue(watched, type)};
        case ElementKind::kSelect: {
            std::string index = watched.selectedIndex();
            if (index == "-1")
                return std::nullopt;  // nothing is chosen, and nobody can choose that
            return EventValue{std::string(type), std::move(index)};
        }
        case ElementKind::kText:
        case ElementKind::kEmail:
        case ElementKind::kUntyped: {
            std::string value = CleanValue(GetValue(watched));
            if (value.empty() && EqualsIgnoreCase(type, "file")) return std::nullopt;
            return EventValue{std::string(type), std::move(value)};
        }
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<EventValue> ReadEvent(std::string_view event, const Element& watched,
                                    std::string_view type, const Element& active) {
    return event == "click" ? ReadClick(watched, type, active) : ReadInput(watched, type);
}

bool HidesPath(const EventValue& read) {
    return EqualsIgnoreCase(read.type, "file") &&
           StartsWithIgnoreCase(read.value, "C:\\fakepath\\");
}

std::string CleanValue(std::string_view text) {
    std::string value = EncodeItemValue(WithLineEnds(text));
    std::erase(value, '\0');  // no keyboard types it, and no file or list shows it
    for (char& c : value) {
        if (c == '\t') c = ' ';
    }
    return std::string(Trim(value));
}

std::string BuildEventRecord(std::string_view id, const EventValue& read, std::string_view event) {
    std::string line = BuildElementRecord(event, id, read.type, read.value);
    if (!read.mark.empty()) line.append(",value=").append(read.mark);
    return line;
}

std::string BuildUrlRecord(const WindowState& window, std::string_view address) {
    return BuildUrlRecord(BuildSizeBar(window.place, window.bars, window.full_screen), address);
}

Element RecordedElement(const Element& element) {
    for (Element at = element; at; at = at.parentElement()) {
        const ElementKind kind = KindOf(GetElementType(at));
        if (kind != ElementKind::kUntyped && kind != ElementKind::kOther) return at;
    }
    return element;
}

std::string RecordOfElement(const Element& element) {
    const std::string type = GetElementType(element);
    const ElementKind kind = KindOf(type);
    std::string_view event = "input";
    if (IsButton(kind) || kind == ElementKind::kLink) event = "click";
    const auto read = ReadEvent(event, element, type, element);
    const std::string id = GetElementId(element);
    if (!read || (id.empty() && read->type.empty() && read->value.empty())) return "";
    return BuildEventRecord(id, *read, event);
}

}  // namespace tamrin
