#include "platform/explorer/explorer_element.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/text.h"

namespace tamrin {
namespace {

using Words = std::initializer_list<std::string_view>;

bool IsOneOf(std::string_view word, Words words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The elements whose value is a text; that of a list item, for one, is a number.
bool HasValue(std::string_view tag) {
    return IsOneOf(tag, {"INPUT", "TEXTAREA", "SELECT", "BUTTON", "OPTION", "DATA", "PARAM"});
}

// Ends the lines in CR LF, as forms send them; documents of newer modes answer them with LF.
std::string WithReturns(std::string_view text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) lines += '\r';
        lines += text[i];
    }
    return lines;
}

// For so long after it was seen an element counts as still in its page.
constexpr std::uint64_t kSeenForMs = 1000;

constexpr std::array<std::string_view, 8> kSnapshotProperties = {
    "id", "name", "tagName", "value", "checked", "selectedIndex", "href", "src"};
constexpr std::array<std::string_view, 4> kSnapshotAttributes = {"type", "alt", "href", "onclick"};

}  // namespace

ExplorerElement::ExplorerElement(std::shared_ptr<ExplorerDocument> page,
                                 const ComPtr<IDispatch>& object, std::string tag)
    : page_(std::move(page)),
      tag_(std::move(tag)),
      object_(page_->Object(object, tag_)),
      identity_(object.As<IUnknown>()),
      seen_at_(page_->pool().calls().Now()) {}

Element ExplorerElement::Make(std::shared_ptr<ExplorerDocument> page,
                              const ComPtr<IDispatch>& object, std::string_view tag) {
    return Element(std::make_shared<ExplorerElement>(std::move(page), object, UpperCase(tag)));
}

const DispatchObject& ExplorerElement::object() const {
    static const DispatchObject none;
    return page_->object() ? object_ : none;
}

std::string ExplorerElement::Get(std::string_view property) {
    const EventSnapshot* snapshot = page_->snapshot();
    if (const ElementSnapshot* then = snapshot ? snapshot->Find(identity()) : nullptr) {
        const auto known = then->properties.find(property);
        if (known != then->properties.end()) return known->second;
    }
    return Live(property);
}

bool ExplorerElement::IsThere() {
    if (!object()) return false;
    // Checked at every read, this would double the calls.
    const std::uint64_t now = page_->pool().calls().Now();
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
    // Only some elements have the property, and a form's control of that name can hide it.
    return answer.IsObject() || answer.Failed() ? Written(property).value_or("") : "";
}

std::optional<std::string> ExplorerElement::getAttribute(std::string_view name) {
    const EventSnapshot* snapshot = page_->snapshot();
    if (const ElementSnapshot* then = snapshot ? snapshot->Find(identity()) : nullptr) {
        const auto known = then->attributes.find(LowerCase(name));
        if (known != then->attributes.end()) return known->second;
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
    // Old documents answer the property of that name, also when the attribute is not written.
    const DispatchObject node =
        page_->ObjectOf(object().Call("getAttributeNode", key), "attribute");
    if (!node || !node.Get("specified").Truth()) return std::nullopt;
    constexpr int kAsWritten = 2;
    auto text = object().Call("getAttribute", key, Variant(kAsWritten)).Text();
    return text ? text : node.Get("nodeValue").Text();
}

const EventSnapshot* ExplorerElement::SnapshotAsActive() const {
    const EventSnapshot* snapshot = page_->snapshot();
    return snapshot && snapshot->IsActive(identity()) ? snapshot : nullptr;
}

Element ExplorerElement::InSnapshot(const EventSnapshot& snapshot, EventSnapshot::Role role) {
    const auto& related = snapshot.elements[role];
    return related ? related->element : Element();
}

Element ExplorerElement::parentElement() {
    if (const auto* snapshot = SnapshotAsActive())
        return InSnapshot(*snapshot, EventSnapshot::kParent);
    return page_->ElementOf(object().Get("parentElement"));
}

Element ExplorerElement::form() {
    if (const auto* snapshot = SnapshotAsActive())
        return InSnapshot(*snapshot, EventSnapshot::kForm);
    if (tag_ == "FORM" || !object()) return {};
    const Variant form = object().Get("form");
    if (!form.Failed()) return page_->ElementOf(form);
    // Only controls have this property.
    Element above = parentElement();
    while (above && above.tagName() != "FORM") above = above.parentElement();
    return above;
}

Element ExplorerElement::DefaultButton() {
    if (const auto* snapshot = SnapshotAsActive()) {
        if (Element button = InSnapshot(*snapshot, EventSnapshot::kDefaultButton)) return button;
    }
    const Element owner = form();
    if (!owner) return {};
    // The form's own collection does not contain image buttons.
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
    // An element that is not displayed answers zeros.
    if (rect.left >= rect.right && rect.top >= rect.bottom) return std::nullopt;
    return rect;
}

bool ExplorerElement::Same(const ElementObject& other) const {
    const auto* element = dynamic_cast<const ExplorerElement*>(&other);
    return element && element->identity() == identity();
}

ElementSnapshot ExplorerElement::TakeSnapshot() {
    ElementSnapshot snapshot;
    snapshot.element = Element(shared_from_this());
    snapshot.identity = identity_;
    for (const std::string_view name : kSnapshotProperties)
        snapshot.properties.emplace(name, Live(name));
    if (IsOneOf(tag_, {"A", "AREA", "BUTTON"}))
        snapshot.properties.emplace("innerText", Live("innerText"));
    for (const std::string_view name : kSnapshotAttributes)
        snapshot.attributes.emplace(name, LiveAttribute(name));
    return snapshot;
}

bool ExplorerElement::Is(std::string_view type) { return LiveAttribute("type") == type; }

bool ExplorerElement::CanAct() const {
    // A page behind a dialog box does not act.
    return !page_->pool().calls().BoxShown() && page_->Holds(object());
}

bool ExplorerElement::Put(std::string_view property, std::string_view value) {
    if (!CanAct()) return false;
    if (EventSnapshot* snapshot = page_->snapshot()) snapshot->Forget(identity());
    if (property == "checked") return PutChecked(value == "True");
    if (property == "selectedIndex") return PutOption(value);
    if (property != "value") return false;
    return tag_ == "SELECT" ? PutSelect(value) : PutText(value);
}

bool ExplorerElement::PutText(std::string_view value) {
    const bool field = tag_ == "INPUT" || tag_ == "TEXTAREA";
    if (!field && tag_ != "BUTTON") {
        if (!object().Get("isContentEditable").Truth()) return false;
        return object().Put("innerText", Variant(value)) && Fire("input");
    }
    // Scripts may not set a file, and automation counts as a script.
    if (tag_ == "INPUT" && Is("file")) return false;
    const std::string before = object().Text("value");
    if (!object().Put("value", Variant(value))) return false;
    // A field drops a value that its type does not allow.
    if (field && !value.empty() && object().Text("value").empty()) {
        object().Put("value", Variant(before));
        return false;
    }
    if (field) Fire("input");
    return true;
}

bool ExplorerElement::PutSelect(std::string_view value) {
    const std::vector<Element> options = page_->Elements(object().Get("options"));
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (options[i].value() == value) return PutOption(std::to_string(i));
    }
    return false;
}

bool ExplorerElement::PutOption(std::string_view index) {
    if (tag_ != "SELECT") return false;
    int wanted = -1;
    const auto [end, error] = std::from_chars(index.data(), index.data() + index.size(), wanted);
    const bool whole = error == std::errc() && end == index.data() + index.size();
    const double length =
        page_->ObjectOf(object().Get("options"), "collection").Get("length").Number().value_or(0);
    if (!whole || wanted < 0 || wanted >= length) return false;
    if (object().Get("selectedIndex").Number() == wanted) return true;
    if (!object().Put("selectedIndex", Variant(wanted))) return false;
    Fire("input");
    return true;
}

bool ExplorerElement::PutChecked(bool want) {
    const bool radio = tag_ == "INPUT" && Is("radio");
    if (!radio && !(tag_ == "INPUT" && Is("checkbox"))) return false;
    const auto checked = [this] { return object().Get("checked").Truth(); };
    if (checked() == want) return true;
    // As a user's click, except where a click does nothing: a disabled one, a set radio button.
    if (!object().Get("disabled").Truth() && (want || !radio)) {
        object().Act("click");
        return true;
    }
    return object().Put("checked", Variant(want));
}

bool ExplorerElement::fireEvent(std::string_view event) {
    if (event == "onfocusin" && SnapshotAsActive()) {
        PageConnection::FireFocus(*page_);
        return true;
    }
    if (!event.starts_with("on") || !CanAct()) return false;
    return event == "onclick" ? FireClick() : Fire(event.substr(2));
}

bool ExplorerElement::FireClick() {
    // fireEvent runs only the page's handlers; the newest documents lack it. dispatchEvent also
    // does the browser's own action for a click, if there is one.
    if (page_->IsStandard() && object().Get("fireEvent").Failed()) {
        return HasOwnAction() || Dispatch("click");
    }
    return object().Act("fireEvent", Variant(std::string_view("onclick")));
}

bool ExplorerElement::HasOwnAction() {
    constexpr std::array<std::string_view, 7> kActing = {"A",     "AREA",   "BUTTON", "INPUT",
                                                         "LABEL", "OPTION", "SELECT"};
    if (std::find(kActing.begin(), kActing.end(), tag_) != kActing.end()) return true;
    const Element above = page_->ElementOf(object().Get("parentElement"));
    return above && Of(above)->HasOwnAction();
}

bool ExplorerElement::Fire(std::string_view type) {
    if (page_->IsStandard()) return Dispatch(type);
    // Old documents have no event "input".
    return object().Act("fireEvent", Variant("on" + std::string(type))) || type == "input";
}

bool ExplorerElement::Dispatch(std::string_view type) {
    const DispatchObject event =
        page_->ObjectOf(page_->object().Call("createEvent", Variant("HTMLEvents")), "event");
    if (event.Call("initEvent", Variant(type), Variant(true), Variant(true)).Failed()) return false;
    return object().Act("dispatchEvent", Variant(event.object().get()));
}

bool ExplorerElement::click() { return CanAct() && object().Act("click"); }

void ExplorerElement::scrollIntoView() { object().Call("scrollIntoView"); }

}  // namespace tamrin
