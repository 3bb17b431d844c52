#include "support/scripted_user.h"

#include <set>
#include <stdexcept>

namespace tamrin::test {

ScriptedUser::Spot ScriptedUser::Find(const std::string& name) const {
    const auto& page = window_->page();
    if (name.empty()) return {page, &page->Body()};
    if (Node* node = page->Find(name)) return {page, node};
    for (Node* frame : page->root().Below("*")) {
        const auto inner = frame->IsFrame() ? page->FramePage(*frame) : nullptr;
        if (Node* node = inner ? inner->Find(name) : nullptr) return {inner, node, frame};
    }
    throw std::logic_error("the page has no " + name);
}

ScriptedUser::Spot ScriptedUser::Active() const {
    const auto& page = window_->page();
    Node* const active = page->active();
    if (!active || !active->IsFrame()) return {page, active};
    const auto inner = page->FramePage(*active);
    return {inner, inner->active(), active};
}

template <class Event, class... Arguments>
void ScriptedUser::Tell(const Spot& spot, Event event, Arguments... arguments) {
    web_.Queue([=, page = spot.page, moment = spot.page->Now()] {
        page->During(moment, [&] {
            page->subscribers.ForEach([&](DocumentEvents& e) { (e.*event)(arguments...); });
        });
    });
}

void ScriptedUser::Focus(const Spot& spot) {
    const Spot before = Active();
    if (before.node == spot.node) return;
    if (before.node && before.node != &before.page->Body()) {
        Tell(before, &DocumentEvents::onbeforedeactivate);
    }
    before.page->SetActive(&before.page->Body());
    const auto& top = window_->page();
    if (spot.frame && top->active() != spot.frame) {
        top->SetActive(spot.frame);
        Tell({top, spot.frame}, &DocumentEvents::onfocusin);
    }
    if (!spot.frame) top->SetActive(&top->Body());
    spot.page->SetActive(spot.node);
    if (spot.node != &spot.page->Body()) Tell(spot, &DocumentEvents::onfocusin);
}

void ScriptedUser::Focus(const std::string& name) { Focus(Find(name)); }

void ScriptedUser::Type(const std::string& name, const std::string& text) {
    Focus(name);
    Find(name).node->value = text;
}

void ScriptedUser::Click(const std::string& name) {
    static const std::set<std::string> kFields{"INPUT", "BUTTON", "SELECT", "TEXTAREA"};
    const Spot spot = Find(name);
    Node* target = spot.node;
    while (target && !kFields.contains(target->tag) && !target->Has("href") &&
           !target->Has("tabindex")) {
        target = target->parent;
    }
    Focus({spot.page, target ? target : &spot.page->Body(), spot.frame});
    if (!target) target = spot.node;
    if (target->Attribute("type") == "checkbox") target->checked = !target->checked;
    if (target->Attribute("type") == "radio") target->checked = true;
    Tell(Active(), &DocumentEvents::onclick);
    const Node* const form = target->Form();
    const std::string href = target->Attribute("href");
    if (!href.empty() && href[0] != '#' && !href.starts_with("javascript:")) GoTo(href);
    if (target->IsSubmit() && form && form->Has("action")) {
        Tell(Active(), &DocumentEvents::onsubmit);
        GoTo(form->Attribute("action"));
    }
}

void ScriptedUser::Enter() {
    const Spot field = Active();
    Tell(field, &DocumentEvents::onkeypress, 13);
    const Node* const form = field.node ? field.node->Form() : nullptr;
    if (!form) return;
    // The browser itself clicks the submit button; the focus stays in the field.
    Tell(field, &DocumentEvents::onclick);
    Tell(field, &DocumentEvents::onsubmit);
    if (form->Has("action")) GoTo(form->Attribute("action"));
}

void ScriptedUser::GoTo(const std::string& address) {
    const auto inner = Active().page;
    const auto top = window_->page();
    web_.Queue([=, window = window_, outer_moment = top->Now(), moment = inner->Now()] {
        top->During(outer_moment, [&] {
            inner->During(moment, [&] {
                window->subscribers().ForEach(
                    [&](BrowserEvents& e) { e.BeforeNavigate2(address); });
            });
        });
    });
    top->Leave();
    window_->Load(address);
}

}  // namespace tamrin::test
