#include "player/element_kinds.h"

#include <array>

#include "platform/text.h"

namespace tamrin {
namespace {

struct Row {
    std::string_view type;
    ElementKind kind;
};

constexpr auto kKinds = std::to_array<Row>({
    {"password", ElementKind::kText},
    {"text", ElementKind::kText},
    {"textarea", ElementKind::kText},
    {"input", ElementKind::kText},
    {"file", ElementKind::kText},
    {"email", ElementKind::kText},
    {"checkbox", ElementKind::kCheck},
    {"radio", ElementKind::kCheck},
    {"select-one", ElementKind::kSelect},
    {"button", ElementKind::kButton},
    {"image", ElementKind::kImage},
    {"submit", ElementKind::kSubmit},
    // Younger than the list above: fields that a page shows as text boxes of their own kind.
    {"tel", ElementKind::kText},
    {"url", ElementKind::kText},
    {"search", ElementKind::kText},
    {"number", ElementKind::kText},
    {"date", ElementKind::kText},
    {"time", ElementKind::kText},
    {"datetime-local", ElementKind::kText},
    {"month", ElementKind::kText},
    {"week", ElementKind::kText},
    {"color", ElementKind::kText},
    {"range", ElementKind::kText},
});

}  // namespace

ElementKind KindOf(std::string_view type) {
    for (const Row& row : kKinds) {
        if (EqualsIgnoreCase(row.type, type)) return row.kind;
    }
    return ElementKind::kOther;
}

}  // namespace tamrin
