#include "recorder/event_record.h"

#include "browser/element_keys.h"
#include "platform/browser.h"
#include "platform/text.h"
#include "recorder/field_kinds.h"
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

std::optional<EventValue> ReadLinkClick(const Element& active) {
    std::string href = GetHref(active);
    if (href.empty()) href = GetHref(active.parentElement());
    if (href.empty()) return std::nullopt;
    std::string text = CleanValue(Trim(active.innerText(), kWhiteSpace));
    return EventValue{"href", text.empty() ? std::move(href) : std::move(text)};
}

std::optional<EventValue> ReadClick(const Element& watched, std::string_view type,
                                    const Element& active) {
    switch (FieldKindOf(type)) {
        case FieldKind::kButton: {
            std::string value = CleanValue(GetValue(watched));
            if (value.empty()) value = GetAttr(watched, "src");
            return EventValue{std::string(type), std::move(value)};
        }
        case FieldKind::kLink:
        case FieldKind::kUntyped:
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
    switch (FieldKindOf(type)) {
        case FieldKind::kCheck:
            return EventValue{std::string(type), watched.checked(), RadioValue(watched, type)};
        case FieldKind::kSelect:
            return EventValue{std::string(type), watched.selectedIndex()};
        case FieldKind::kText:
        case FieldKind::kEmail:
        case FieldKind::kUntyped:
            return EventValue{std::string(type), CleanValue(GetValue(watched))};
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<EventValue> ReadEvent(std::string_view event, const Element& watched,
                                    std::string_view type, const Element& active) {
    return event == "click" ? ReadClick(watched, type, active) : ReadInput(watched, type);
}

std::string CleanValue(std::string_view text) {
    std::string value = EncodeItemValue(WithLineEnds(text));
    for (char& c : value) {
        if (c == '\t') c = ' ';
    }
    return std::string(Trim(value));
}

std::string BuildEventRecord(std::string_view id, const EventValue& read, std::string_view event) {
    std::string line = BuildElementRecord(event, id, read.type, read.value);
    if (!read.radio_value.empty()) line.append(",value=").append(read.radio_value);
    return line;
}

std::string BuildUrlRecord(const WindowState& window, std::string_view address) {
    return BuildUrlRecord(BuildSizeBar(window.place, window.bars, window.full_screen), address);
}

}  // namespace tamrin
