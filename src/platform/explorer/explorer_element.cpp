#include "platform/explorer/explorer_element.h"

#include <algorithm>
#include <array>

#include "platform/text.h"

namespace tamrin {
namespace {

using Words = std::initializer_list<std::string_view>;

bool IsOneOf(std::string_view word, Words words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The elements whose value is a field's; the number of a list's item, for one, is none.
bool HasValue(std::string_view tag) {
    return IsOneOf(tag, {"INPUT", "TEXTAREA", "SELECT", "BUTTON", "OPTION", "DATA", "PARAM"});
}

// The lines of a text end in CR LF, as a form sends them; newer pages answer them without the CR.
std::string WithReturns(std::string_view text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) lines += '\r';
        lines += text[i];
    }
    return lines;
}

// An element that was found is taken to be in its page for so long.
constexpr std::uint64_t kSeenForMs = 1000;

constexpr std::array<std::string_view, 8> kMomentProperties = {
    "id", "name", "tagName", "value", "checked", "selectedIndex", "href", "src"};
constexpr std::array<std::string_view, 4> kMomentAttributes = {"type", "alt", "href", "onclick"};

}  // namespace

ExplorerElement::ExplorerElement(std::shared_ptr<ExplorerDocument> page,
                                 const ComPtr<IDispatch>& object, std::string tag)
    : page_(std::move(page)),
      tag_(std::move(tag)),
      object_(page_->Object(object, tag_)),
      identity_(object.As<IUnknown>()),
      seen_at_(GetTickCount64()) {}

Element ExplorerElement::Make(std::shared_ptr<ExplorerDocument> page,
                              const ComPtr<IDispatch>& object, std::string_view tag) {
    return Element(std::make_shared<ExplorerElement>(std::move(page), object, UpperCase(tag)));
}

const DispatchObject& ExplorerElement::object() const {
    static const DispatchObject none;
    return page_->object() ? object_ : none;
}

std::string ExplorerElement::Get(std::string_view property) {
    if (const PageMoment* moment = page_->moment()) {
        const ElementMoment* then = const_cast<PageMoment*>(moment)->Find(identity());
        if (then) {
            const auto known = then->properties.find(property);
            if (known != then->properties.end()) return known->second;
        }
    }
    page_->pool().fired_click().SettleBefore(identity());
    return Live(property);
}

bool ExplorerElement::IsThere() {
    if (!object()) return false;
    // Asked at every read, it would double their calls.
    const std::uint64_t now = GetTickCount64();
    if (now - seen_at_ < kSeenForMs) return true;
    if (!page_->Holds(object())) return false;
    seen_at_ = now;
    return true;
}

std::string ExplorerElement::Live(std::string_view property) {
    if (!IsThere()) return {};
    if (property == "tagName") return tag_;
    if (property == "value") {
        if (!HasValue(tag_)) return {};
        const std::string value = TextMember("value");
        return tag_ == "TEXTAREA" ? WithReturns(value) : value;
    }
    if (property == "checked") return tag_ == "INPUT" ? object().Text("checked") : "";
    if (property == "selectedIndex" || property == "length")
        return tag_ == "SELECT" ? object().Text(property) : "";
    if (property == "href") return getAttribute("href").value_or("");
    if (property == "src") return tag_ == "FORM" ? "" : object().Text("src");
    if (IsOneOf(property, {"id", "name"})) return TextMember(property);
    return IsOneOf(property, {"innerText", "outerHTML"}) ? TextMember(property) : "";
}

std::string ExplorerElement::TextMember(std::string_view property) {
    const Variant answer = object().Get(property);
    if (const auto text = answer.Text()) return *text;
    // Missing, as the name of what is no control, or hidden by a control of that name.
    return answer.IsObject() || answer.Failed() ? Written(property).value_or("") : "";
}

std::optional<std::string> ExplorerElement::getAttribute(std::string_view name) {
    if (PageMoment* moment = page_->moment()) {
        if (const ElementMoment* then = moment->Find(identity())) {
            const auto known = then->attributes.find(LowerCase(name));
            if (known != then->attributes.end()) return known->second;
        }
    }
    return LiveAttribute(name);
}

std::optional<std::string> ExplorerElement::LiveAttribute(std::string_view name) {
    if (!IsThere()) return std::nullopt;
    if (EqualsIgnoreCase(name, "type") &&
        IsOneOf(tag_, {"INPUT", "BUTTON", "SELECT", "TEXTAREA"})) {
        const std::string type = TextMember("type");
        return type.empty() ? Written("type") : type;
    }
    auto written = Written(name);
    if (written && EqualsIgnoreCase(name, "href") && IsOneOf(tag_, {"A", "AREA"})) {
        auto whole = object().Get("href").Text();
        if (whole) return whole;
    }
    return written;
}

std::optional<std::string> ExplorerElement::Written(std::string_view name) {
    const Variant key(name);
    if (page_->HasWrittenAttributes()) return object().Call("getAttribute", key).Text();
    // Documents of old answer the property of that name, also where nothing is written.
    const DispatchObject node =
        page_->ObjectOf(object().Call("getAttributeNode", key), "attribute");
    if (!node || !node.Get("specified").Truth()) return std::nullopt;
    constexpr int kAsWritten = 2;
    auto text = object().Call("getAttribute", key, Variant(kAsWritten)).Text();
    return text ? text : node.Get("nodeValue").Text();
}

const ElementMoment* ExplorerElement::RelatedInMoment(std::size_t role, bool& told) const {
    const PageMoment* moment = page_->moment();
    told = false;
    if (!moment) return nullptr;
    const auto& active = moment->elements[PageMoment::kActive];
    told = active && active->identity.get() == identity();
    const auto& related = moment->elements[role];
    return told && related ? &*related : nullptr;
}

Element ExplorerElement::parentElement() {
    bool told = false;
    const ElementMoment* then = RelatedInMoment(PageMoment::kParent, told);
    if (told) return then ? then->element : Element();
    return page_->ElementOf(object().Get("parentElement"));
}

Element ExplorerElement::form() {
    bool told = false;
    const ElementMoment* then = RelatedInMoment(PageMoment::kForm, told);
    if (told) return then ? then->element : Element();
    if (tag_ == "FORM" || !object()) return {};
    const Variant form = object().Get("form");
    if (!form.Failed()) return page_->ElementOf(form);
    // What is no control does not know it.
    Element above = parentElement();
    while (above && above.tagName() != "FORM") above = above.parentElement();
    return above;
}

Element ExplorerElement::DefaultButton() {
    bool told = false;
    const ElementMoment* then = RelatedInMoment(PageMoment::kDefaultButton, told);
    if (then) return then->element;
    const Element owner = form();
    if (!owner) return {};
    // A form's own collection leaves out buttons that are pictures.
    Element first;
    double first_place = 0;
    for (const char* tag : {"input", "button"}) {
        const auto& form_object = Of(owner)->object();
        for (Element& button :
             page_->Elements(form_object.Call("getElementsByTagName", Variant(tag)))) {
            const std::string type = button.getAttribute("type").value_or("");
            if (type != "submit" && type != "image") continue;
            const double place = Of(button)->object().Get("sourceIndex").Number().value_or(0);
            if (!first || place < first_place) {
                first = std::move(button);
                first_place = place;
            }
            break;
        }
    }
    return first;
}

std::vector<std::string> ExplorerElement::OptionTexts() {
    std::vector<std::string> texts;
    if (tag_ != "SELECT") return texts;
    for (const Element& option : page_->Elements(object().Get("options")))
        texts.push_back(Of(option)->object().Text("text"));
    return texts;
}

std::optional<Rect> ExplorerElement::getBoundingClientRect() {
    if (!page_->Holds(object())) return std::nullopt;
    const auto box = page_->ObjectOf(object().Call("getBoundingClientRect"), "rectangle");
    if (!box) return std::nullopt;
    const auto edge = [&box](const char* name) { return box.Get(name).Number().value_or(0); };
    const Rect rect{edge("left"), edge("top"), edge("right"), edge("bottom")};
    // What is not displayed has no box: it answers one of zeros.
    if (rect.left >= rect.right && rect.top >= rect.bottom) return std::nullopt;
    return rect;
}

bool ExplorerElement::Same(const ElementObject& other) const {
    const auto* element = dynamic_cast<const ExplorerElement*>(&other);
    return element && element->identity() == identity();
}

ElementMoment ExplorerElement::TakeMoment() {
    ElementMoment moment;
    moment.identity = identity_;
    for (const std::string_view name : kMomentProperties)
        moment.properties.emplace(name, Live(name));
    if (IsOneOf(tag_, {"A", "AREA", "BUTTON"}))
        moment.properties.emplace("innerText", Live("innerText"));
    for (const std::string_view name : kMomentAttributes)
        moment.attributes.emplace(name, LiveAttribute(name));
    return moment;
}

}  // namespace tamrin
