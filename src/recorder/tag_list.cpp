#include "recorder/tag_list.h"

#include <algorithm>

#include "browser/element_keys.h"
#include "platform/utf8.h"
#include "recorder/event_record.h"
#include "recorder/field_kinds.h"

namespace tamrin {
namespace {

// Longer values are cut: a list shows one line, and a page may hold a book in a text area.
constexpr std::size_t kMostValue = 200;

// A text that does not break the line or its columns.
std::string OneLine(std::string text) {
    text.resize(CutLength(text, kMostValue));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    return text;
}

std::string Line(std::size_t number, const Element& element) {
    std::string line = std::to_string(number);
    for (std::string column :
         {GetTagName(element), GetElementType(element), GetElementId(element), GetValue(element)}) {
        line.append(1, '\t').append(OneLine(std::move(column)));
    }
    return line;
}

}  // namespace

TagList ListTags(const Document& document) {
    TagList list;
    list.elements = document.getElementsByTagName("*");
    list.lines.reserve(list.elements.size());
    for (const Element& element : list.elements) {
        list.lines.push_back(Line(list.lines.size() + 1, element));
    }
    return list;
}

Element RecordedElement(const Element& element) {
    for (Element at = element; at; at = at.parentElement()) {
        const FieldKind kind = FieldKindOf(GetElementType(at));
        if (kind != FieldKind::kUntyped && kind != FieldKind::kOther) return at;
    }
    return element;
}

std::string RecordOfElement(const Element& element) {
    const std::string type = GetElementType(element);
    const FieldKind kind = FieldKindOf(type);
    std::string_view event = "input";
    if (kind == FieldKind::kButton || kind == FieldKind::kLink) event = "click";
    const auto read = ReadEvent(event, element, type, element);
    const std::string id = GetElementId(element);
    if (!read || (id.empty() && read->type.empty() && read->value.empty())) return "";
    return BuildEventRecord(id, *read, event);
}

}  // namespace tamrin
