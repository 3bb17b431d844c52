// What is done to an element, as its user would.
#include <algorithm>
#include <array>
#include <charconv>

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_connection.h"
#include "platform/text.h"

namespace tamrin {

bool ExplorerElement::Is(std::string_view type) { return LiveAttribute("type") == type; }

bool ExplorerElement::CanAct() const {
    // Nobody acts on a page behind a dialog box.
    return !page_->pool().calls().BoxShown() && page_->Holds(object());
}

bool ExplorerElement::Put(std::string_view property, std::string_view value) {
    page_->pool().fired_click().Settle();
    if (!CanAct()) return false;
    if (PageMoment* moment = page_->moment()) moment->Forget(identity());
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
    // Scripts may not name a file, and automation counts as one.
    if (tag_ == "INPUT" && Is("file")) return false;
    const std::string before = object().Text("value");
    if (!object().Put("value", Variant(value))) return false;
    // A field answers a value that it cannot hold with none.
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
    // A user clicks; but nobody can click a disabled one, or take the mark off a radio button.
    if (!object().Get("disabled").Truth() && (want || !radio)) {
        object().Act("click");
        return true;
    }
    return object().Put("checked", Variant(want));
}

bool ExplorerElement::fireEvent(std::string_view event) {
    if (const PageMoment* moment = page_->moment()) {
        const auto& active = moment->elements[PageMoment::kActive];
        if (event == "onfocusin" && active && active->identity.get() == identity()) {
            PageConnection::TellFocus(*page_);
            return true;
        }
    }
    FiredClick& fired = page_->pool().fired_click();
    fired.Settle();
    if (!event.starts_with("on") || !CanAct()) return false;
    if (event != "onclick") return Fire(event.substr(2));
    fired.Set(identity_, [element = *this]() mutable { element.FireClick(); });
    return true;
}

void ExplorerElement::FireClick() {
    // Old documents have a way that only tells the page's handlers. The standards' way also does
    // what the browser does for a click, if anything.
    if (page_->IsStandard() && object().Get("fireEvent").Failed()) {
        if (!HasOwnAction()) Dispatch("click");
        return;
    }
    object().Act("fireEvent", Variant(std::string_view("onclick")));
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
    // Documents of old know no "input".
    return object().Act("fireEvent", Variant("on" + std::string(type))) || type == "input";
}

bool ExplorerElement::Dispatch(std::string_view type) {
    const DispatchObject event =
        page_->ObjectOf(page_->object().Call("createEvent", Variant("HTMLEvents")), "event");
    if (event.Call("initEvent", Variant(type), Variant(true), Variant(true)).Failed()) return false;
    return object().Act("dispatchEvent", Variant(event.object().get()));
}

bool ExplorerElement::click() {
    page_->pool().fired_click().ReplaceBy(identity());
    return CanAct() && object().Act("click");
}

void ExplorerElement::scrollIntoView() { object().Call("scrollIntoView"); }

}  // namespace tamrin
