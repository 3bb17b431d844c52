#pragma once

#include <string_view>

namespace tamrin {

// How the player acts on an element.
enum class ElementKind { kText, kCheck, kSelect, kButton, kImage, kSubmit, kOther };

// The kind for an element's type (GetElementType), letter case ignored.
ElementKind KindOf(std::string_view type);

}  // namespace tamrin
