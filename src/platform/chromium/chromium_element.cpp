#include "platform/chromium/chromium_element.h"

#include <nlohmann/json.hpp>
#include <span>

#include "platform/chromium/chromium_document.h"
#include "platform/chromium/element_list.h"

namespace tamrin {
namespace {

using nlohmann::json;

// What a lookup tells, by the names under which it is read. Those from kChecked on are told by
// Named alone, and by events.
struct KnownName {
    std::string_view name;
    std::size_t key;
};
constexpr KnownName kProperties[] = {
    {"id", ElementList::kId},
    {"name", ElementList::kName},
    {"tagName", ElementList::kTagName},
    {"value", ElementList::kValue},
    {"href", ElementList::kHref},
    {"checked", ElementList::kChecked},
    {"selectedIndex", ElementList::kSelectedIndex},
    {"length", ElementList::kLength},
};
constexpr KnownName kAttributes[] = {
    {"type", ElementList::kType},
    {"alt", ElementList::kAlt},
    {"onclick", ElementList::kOnclick},
    {"href", ElementList::kHref},
};

// What only events tell.
constexpr KnownName kMomentProperties[] = {
    {"src", ElementList::kSource},
    {"innerText", ElementList::kMomentText},
};
constexpr KnownName kMomentAttributes[] = {
    {"src", ElementList::kSourceAttribute},
};

using Names = std::span<const KnownName>;

// The field that an event tells of one of these names in a row; nothing when it does not.
std::optional<std::size_t> FieldIn(std::size_t row, std::initializer_list<Names> tables,
                                   std::string_view name) {
    for (const Names table : tables) {
        for (const KnownName& known : table) {
            if (known.name != name) continue;
            return PageMoment::kHeader + row * ElementList::kMomentKeys + known.key;
        }
    }
    return std::nullopt;
}

std::string Quoted(std::string_view text) {
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

ChromiumDocument& ChromiumElement::document() const { return list_.document(); }

int ChromiumElement::number() const {
    return list_.fields().Int(list_.Field(row_, ElementList::kNumber));
}

std::string ChromiumElement::Expression(std::string_view function, Arguments arguments) const {
    std::string expression = "tamrin.of(" + std::to_string(number());
    expression += ",'";
    expression += function;
    expression += '\'';
    for (const std::string_view argument : arguments) {
        expression += ',';
        expression += Quoted(argument);
    }
    expression += ')';
    return expression;
}

AgentAnswer ChromiumElement::Run(std::string_view function, Arguments arguments) const {
    return document().Run(Expression(function, arguments));
}

bool ChromiumElement::KeysHold() const {
    if (list_.kind() == ElementList::Kind::kMoment) return StateHolds();
    return document().Exists() && !document().WrittenSince(number(), list_.moment());
}

bool ChromiumElement::StateHolds() const {
    return document().Exists() && document().tab().moment() == list_.moment();
}

std::optional<std::size_t> ChromiumElement::KnownField(std::string_view property) const {
    if (property == "innerText" && list_.kind() == ElementList::Kind::kLinks && KeysHold()) {
        return list_.Field(row_, ElementList::kInnerText);
    }
    for (const KnownName& known : kProperties) {
        if (known.name != property) continue;
        // While a user is at work in the page, what stands in a field is state, too.
        const bool changes = known.key >= ElementList::kKeys;
        if (changes && list_.kind() != ElementList::Kind::kNamed) break;
        const bool is_state =
            changes || (known.key == ElementList::kValue && document().tab().Watched());
        if (is_state ? StateHolds() : KeysHold()) return list_.Field(row_, known.key);
    }
    return std::nullopt;
}

std::string ChromiumElement::Get(std::string_view property) {
    if (const auto row = document().MomentRow(number())) {
        const PageMoment& moment = *document().Moment();
        const auto field = FieldIn(*row, {kProperties, kMomentProperties}, property);
        const bool told = field && !(property == "innerText" && moment.fields.IsNull(*field));
        if (told) return std::string(moment.fields.Text(*field));
    }
    if (const auto field = KnownField(property)) return std::string(list_.fields().Text(*field));
    return std::string(Run("get", {property}).fields.Text(0));
}

std::optional<std::string> ChromiumElement::getAttribute(std::string_view name) {
    if (const auto row = document().MomentRow(number())) {
        const PageMoment& moment = *document().Moment();
        const auto field = FieldIn(*row, {kAttributes, kMomentAttributes}, name);
        if (field) return moment.fields.Optional(*field);
    }
    for (const KnownName& known : kAttributes) {
        if (known.name == name && KeysHold()) {
            return list_.fields().Optional(list_.Field(row_, known.key));
        }
    }
    return Run("attribute", {name}).fields.Optional(0);
}

Element ChromiumElement::Related(std::size_t row, std::string_view function) {
    const bool told = document().MomentRow(number()) == 0U;
    return told ? document().InMoment(row) : document().One(Expression(function));
}

Element ChromiumElement::parentElement() { return Related(1, "parent"); }
Element ChromiumElement::form() { return Related(2, "form"); }
Element ChromiumElement::DefaultButton() { return Related(3, "defaultButton"); }

std::vector<std::string> ChromiumElement::OptionTexts() {
    const FieldBlock fields = Run("options").fields;
    std::vector<std::string> texts;
    for (std::size_t i = 1; i < fields.size(); ++i) texts.emplace_back(fields.Text(i));
    return texts;
}

std::optional<Rect> ChromiumElement::getBoundingClientRect() {
    const auto read = [](const FieldBlock& fields, std::size_t at) -> std::optional<Rect> {
        if (fields.IsNull(at)) return std::nullopt;
        return Rect{fields.Number(at), fields.Number(at + 1), fields.Number(at + 2),
                    fields.Number(at + 3)};
    };
    if (list_.kind() == ElementList::Kind::kNamed && StateHolds()) {
        return read(list_.fields(), list_.Field(row_, ElementList::kPlace));
    }
    if (const FieldBlock* kept = document().KeptPlace(number())) {
        return read(*kept, ElementList::kViewport);
    }
    return read(Run("place").fields, ElementList::kViewport);
}

std::optional<ScreenPoint> ChromiumElement::ToScreen() {
    const auto convert = [this](const FieldBlock& fields, std::size_t viewport,
                                std::size_t place) -> std::optional<ScreenPoint> {
        if (fields.IsNull(place)) return std::nullopt;
        return document().ToScreen(fields, viewport, fields.Number(place + 4),
                                   fields.Number(place + 5));
    };
    if (list_.kind() == ElementList::Kind::kNamed && StateHolds()) {
        return convert(list_.fields(), 3, list_.Field(row_, ElementList::kPlace));
    }
    if (const FieldBlock* kept = document().KeptPlace(number())) {
        return convert(*kept, 0, ElementList::kViewport);
    }
    return convert(Run("place").fields, 0, ElementList::kViewport);
}

FieldBlock ChromiumElement::ContentCorner() const { return Run("content").fields; }

bool ChromiumElement::Same(const ElementObject& other) const {
    const auto* element = dynamic_cast<const ChromiumElement*>(&other);
    return element && element->number() == number() &&
           element->document().agent() == document().agent();
}

}  // namespace tamrin
