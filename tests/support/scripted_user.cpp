#include "support/scripted_user.h"

#include <stdexcept>

namespace tamrin::test {
namespace {

bool TakesFocus(const Node& node) {
    for (const char* tag : {"INPUT", "BUTTON", "SELECT", "TEXTAREA"}) {
        if (node.tag == tag) return true;
    }
    return node.Has("href") || node.Has("tabindex");
}

bool IsSubmit(const Node& node) {
    const std::string type = node.Attribute("type");
    return type == "submit" || type == "image" || (node.tag == "BUTTON" && type.empty());
}

}  // namespace

ScriptedUser::Spot ScriptedUser::Find(const std::string& name) const {
    const auto& page = window_->page();
    if (Node* node = page->Find(name)) return {page, node, nullptr};
    for (Node* frame : page->root().Below("*")) {
        if (frame->tag != "IFRAME" && frame->tag != "FRAME") continue;
        const auto inner = page->FramePage(*frame);
        if (Node* node = inner ? inner->Find(name) : nullptr) return {inner, node, frame};
    }
    throw std::logic_error("the page has no " + name);
}

ScriptedUser::Spot ScriptedUser::Active() const {
    const auto& page = window_->page();
    Node* const active = page->active();
    if (!active || (active->tag != "IFRAME" && active->tag != "FRAME")) {
        return {page, active, nullptr};
    }
    const auto inner = page->FramePage(*active);
    return {inner, inner->active(), active};
}

void ScriptedUser::Tell(const Spot& spot, const std::function<void(DocumentEvents&)>& event) {
    web_.Queue([page = spot.page, moment = spot.page->Now(), event] { page->Tell(moment, event); });
}

void ScriptedUser::Focus(const Spot& spot) {
    const Spot before = Active();
    if (before.page == spot.page && before.node == spot.node) return;
    if (before.node && before.node != &before.page->Body()) {
        Tell(before, [](DocumentEvents& e) { e.onbeforedeactivate(); });
    }
    before.page->SetActive(&before.page->Body());
    const auto& top = window_->page();
    if (spot.frame && top->active() != spot.frame) {
        top->SetActive(spot.frame);
        Tell({top, spot.frame, nullptr}, [](DocumentEvents& e) { e.onfocusin(); });
    }
    if (!spot.frame) top->SetActive(&top->Body());
    spot.page->SetActive(spot.node);
    if (spot.node == &spot.page->Body()) return;
    Tell(spot, [](DocumentEvents& e) { e.onfocusin(); });
}

void ScriptedUser::Focus(const std::string& name) {
    const auto& page = window_->page();
    Focus(name.empty() ? Spot{page, &page->Body(), nullptr} : Find(name));
}

void ScriptedUser::Type(const std::string& name, const std::string& text) {
    Focus(name);
    Find(name).node->value = text;
}

void ScriptedUser::Choose(const std::string& name, int index) {
    Focus(name);
    Find(name).node->selected = index;
}

void ScriptedUser::Click(const std::string& name) {
    const Spot spot = Find(name);
    Node* target = spot.node;
    while (target && !TakesFocus(*target)) target = target->parent;
    Focus({spot.page, target ? target : &spot.page->Body(), spot.frame});
    if (!target) target = spot.node;
    if (target->Attribute("type") == "checkbox") target->checked = !target->checked;
    if (target->Attribute("type") == "radio") target->checked = true;
    Tell(Active(), [](DocumentEvents& e) { e.onclick(); });
    const Node* const form = ScriptedPage::FormOf(target);
    const std::string href = target->Attribute("href");
    if (!href.empty() && href[0] != '#' && !href.starts_with("javascript:")) GoTo(href);
    if (IsSubmit(*target) && form && form->Has("action")) {
        Tell(Active(), [](DocumentEvents& e) { e.onsubmit(); });
        GoTo(form->Attribute("action"));
    }
}

void ScriptedUser::Enter() {
    const Spot field = Active();
    Tell(field, [](DocumentEvents& e) { e.onkeypress(13); });
    Node* const form = ScriptedPage::FormOf(field.node);
    if (!form) return;
    // The browser itself clicks the submit button; the focus stays in the field.
    Tell(field, [](DocumentEvents& e) { e.onclick(); });
    Tell(field, [](DocumentEvents& e) { e.onsubmit(); });
    if (form->Has("action")) GoTo(form->Attribute("action"));
}

void ScriptedUser::GoTo(const std::string& address) {
    const Spot active = Active();
    const auto top = window_->page();
    const auto tell = [window = window_, address] {
        for (BrowserEvents* events : window->subscribers()) events->BeforeNavigate2(address);
    };
    web_.Queue([=, inner = active.page, outer = top->Now(), moment = active.page->Now()] {
        if (inner == top) {
            top->During(moment, tell);
        } else {
            top->During(outer, [&] { inner->During(moment, tell); });
        }
    });
    top->Leave();
    window_->Load(address);
}

}  // namespace tamrin::test
