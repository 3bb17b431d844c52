#include "recorder/current_value.h"

#include "browser/element_keys.h"
#include "recorder/field_kinds.h"

namespace tamrin {

std::string GetCurrentValue(const Element& element) {
    switch (FieldKindOf(GetElementType(element))) {
        case FieldKind::kCheck:
            return element.checked();
        case FieldKind::kSelect:
            return element.selectedIndex();
        case FieldKind::kText:
            return element.value();
        case FieldKind::kEmail:
        case FieldKind::kUntyped:
        case FieldKind::kButton:
        case FieldKind::kLink:
        case FieldKind::kOther:
            return "";
    }
    return "";
}

}  // namespace tamrin
