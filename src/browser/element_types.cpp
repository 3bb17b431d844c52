#include "browser/element_types.h"

#include <array>

#include "platform/text.h"

namespace tamrin {
namespace {

constexpr auto kTypes = std::to_array<ElementType>({
    {"password", ElementKind::kText, true},
    {"text", ElementKind::kText, true},
    {"textarea", ElementKind::kText, true},
    {"input", ElementKind::kText, true},
    {"file", ElementKind::kText, true},
    {"checkbox", ElementKind::kCheck, true},
    {"radio", ElementKind::kCheck, true},
    {"select-one", ElementKind::kSelect, true},
    {"button", ElementKind::kButton, true},
    {"submit", ElementKind::kSubmit, true},
    {"image", ElementKind::kImage, true},
    {"href", ElementKind::kLink, true},
    {"", ElementKind::kUntyped, false},
    {"email", ElementKind::kEmail, false},
    // Fields that a page shows as text boxes of their own kind; browsers that do not know the type
    // show a plain one.
    {"tel", ElementKind::kText, false},
    {"url", ElementKind::kText, false},
    {"search", ElementKind::kText, false},
    {"number", ElementKind::kText, false},
    {"date", ElementKind::kText, false},
    {"time", ElementKind::kText, false},
    {"datetime-local", ElementKind::kText, false},
    {"month", ElementKind::kText, false},
    {"week", ElementKind::kText, false},
    {"color", ElementKind::kText, false},
    {"range", ElementKind::kText, false},
});

}  // namespace

std::span<const ElementType> ElementTypes() { return kTypes; }

ElementKind KindOf(std::string_view type) {
    for (const ElementType& known : kTypes) {
        if (EqualsIgnoreCase(known.name, type)) return known.kind;
    }
    return ElementKind::kOther;
}

}  // namespace tamrin
