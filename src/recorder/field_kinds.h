#pragma once

#include <string_view>

namespace tamrin {

// Elements by what a recording does with them.
enum class FieldKind {
    kText,     // password, text, textarea, input, file, and the younger kinds of text box
    kEmail,    // email
    kCheck,    // radio, checkbox
    kSelect,   // select-one
    kButton,   // submit, button, image
    kLink,     // an element with an href and no type
    kUntyped,  // neither
    kOther,    // any other type
};

// The kind of an element type (GetElementType), letter case ignored.
FieldKind FieldKindOf(std::string_view type);

}  // namespace tamrin
