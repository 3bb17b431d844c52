#include "recorder/tag_list.h"

#include <algorithm>

#include "browser/element_keys.h"
#include "platform/utf8.h"

namespace tamrin {
namespace {

// Longer values are cut: a list shows one line, and a page may hold a book in a text area.
constexpr std::size_t kLongestValue = 200;

// A text that does not break the line or its columns.
std::string OneLine(std::string text) {
    text.resize(CutLength(text, kLongestValue));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    return text;
}

std::string Line(std::size_t number, const Element& element) {
    std::string line = std::to_string(number);
    const std::string type = GetElementType(element);
    for (std::string column :
         {GetTagName(element), type, GetElementId(element), ShownValue(type, GetValue(element))}) {
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

}  // namespace tamrin
