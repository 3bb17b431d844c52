#pragma once

#include <span>
#include <string_view>

namespace tamrin {

// How an element is recorded and played. An element that has none of the listed types is kOther.
enum class ElementKind {
    kText,     // recorded when it is left, with its text; played by putting the text in
    kEmail,    // the same, but leaving it always counts as a change
    kCheck,    // recorded when it is left, with "True" or "False"; played by checking it or not
    kSelect,   // recorded when it is left, with the number of the option; played by choosing it
    kButton,   // a click is recorded, and played
    kImage,    // the same; no other action does anything to it
    kSubmit,   // the same; every action clicks it
    kLink,     // a click is recorded; the player follows it
    kUntyped,  // no type and no address: recorded when it is left, played by its "onclick"
    kOther,    // never recorded, played by its "onclick"
};

// One type that the program knows, as GetElementType answers it.
struct ElementType {
    std::string_view name;
    ElementKind kind;
    bool offered;  // by the record editor, in the order of the table
};
std::span<const ElementType> ElementTypes();

// The kind of a type, letter case ignored.
ElementKind KindOf(std::string_view type);

// Whether a click on such an element is the record of a button.
constexpr bool IsButton(ElementKind kind) {
    return kind == ElementKind::kButton || kind == ElementKind::kImage ||
           kind == ElementKind::kSubmit;
}

// Whether such an element holds a value that the player sets.
constexpr bool HoldsValue(ElementKind kind) {
    return kind == ElementKind::kText || kind == ElementKind::kEmail ||
           kind == ElementKind::kCheck || kind == ElementKind::kSelect;
}

}  // namespace tamrin
