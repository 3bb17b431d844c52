#include "recorder/field_kinds.h"

#include <array>

#include "platform/text.h"

namespace tamrin {
namespace {

struct Row {
    std::string_view type;
    FieldKind kind;
};

constexpr auto kKinds = std::to_array<Row>({
    {"", FieldKind::kUntyped},
    {"href", FieldKind::kLink},
    {"text", FieldKind::kText},
    {"password", FieldKind::kText},
    {"textarea", FieldKind::kText},
    {"input", FieldKind::kText},
    {"file", FieldKind::kText},
    {"email", FieldKind::kEmail},
    {"radio", FieldKind::kCheck},
    {"checkbox", FieldKind::kCheck},
    {"select-one", FieldKind::kSelect},
    {"submit", FieldKind::kButton},
    {"button", FieldKind::kButton},
    {"image", FieldKind::kButton},
    // Younger than the list above: browsers that do not know them show them as text boxes.
    {"tel", FieldKind::kText},
    {"url", FieldKind::kText},
    {"search", FieldKind::kText},
    {"number", FieldKind::kText},
    {"date", FieldKind::kText},
    {"time", FieldKind::kText},
    {"datetime-local", FieldKind::kText},
    {"month", FieldKind::kText},
    {"week", FieldKind::kText},
    {"color", FieldKind::kText},
    {"range", FieldKind::kText},
});

}  // namespace

FieldKind FieldKindOf(std::string_view type) {
    for (const Row& row : kKinds) {
        if (EqualsIgnoreCase(row.type, type)) return row.kind;
    }
    return FieldKind::kOther;
}

}  // namespace tamrin
