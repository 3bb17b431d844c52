#pragma once

#include <algorithm>
#include <stdexcept>

#include "support/scripted_browser.h"

namespace tamrin::test {

// A person at work in a window of the scripted browser. What he does happens in DoEvents, one act
// behind the other. Elements are named by id or name, in the page or in a frame of it.
class ScriptedUser {
public:
    ScriptedUser(ScriptedWeb& web, std::shared_ptr<ScriptedBrowser> window)
        : web_(web), window_(std::move(window)) {}

    // "type NAME TEXT", "focus NAME", "leave" (the field), "click NAME", "enter" (the key) or "open
    // ADDRESS". False when it is no act of a user.
    bool Do(const std::string& act) {
        const std::string verb = act.substr(0, act.find(' '));
        const std::string rest = act.substr(std::min(verb.size() + 1, act.size()));
        const std::string name = rest.substr(0, rest.find(' '));
        const std::string text = rest.substr(std::min(name.size() + 1, rest.size()));
        if (verb == "type") {
            At(name, [=](Node& node) { node.value = text; });
        } else if (verb == "focus" || verb == "leave") {
            At(name, [](Node&) {});
        } else if (verb == "click") {
            At(name, [this](Node& node) { Click(node); });
        } else if (verb == "enter") {
            web_.events.emplace_back([this] { Enter(); });
        } else if (verb == "open") {
            web_.events.emplace_back([=, this] { Leave(name); });
        } else {
            return false;
        }
        return true;
    }

private:
    struct Spot {
        std::shared_ptr<ScriptedPage> page;
        Node* node = nullptr;
    };
    // Brings the focus to an element, or to the one around it that takes it, and does `act` there.
    // "" is beside everything.
    void At(const std::string& name, const std::function<void(Node&)>& act) {
        static const std::set<std::string> kFields{"INPUT", "BUTTON", "SELECT", "TEXTAREA"};
        Spot spot = Find(name);
        const auto takes_focus = [&](const Node& node) {
            return &node == spot.page->body || node.Has("tabindex") || node.Has("href") ||
                   kFields.contains(node.tag);
        };
        while (!takes_focus(*spot.node)) spot.node = spot.node->parent;
        web_.events.emplace_back([=, this] {
            MoveFocus(spot);
            act(*spot.node);
        });
    }
    // A link, or a submit button of a form with an action, leads there.
    void Click(Node& node) {
        if (node.Attribute("type") == "radio") node.checked = true;
        Fire(*Active().page, &DocumentEvents::onclick);
        if (web_.pages.contains(node.Attribute("href"))) Leave(node.Attribute("href"));
        if (node.IsSubmit()) Submit(node.Form());
    }
    void Enter() {
        const Spot field = Active();
        field.page->subscribers.ForEach([](DocumentEvents& e) { e.onkeypress(13); });
        // The browser itself clicks the submit button; the focus stays in the field.
        Fire(*field.page, &DocumentEvents::onclick);
        Submit(field.node->Form());
    }
    static void Fire(ScriptedPage& page, void (DocumentEvents::*event)()) {
        page.subscribers.ForEach(std::mem_fn(event));
    }
    Spot Find(const std::string& name) const {
        const auto& page = window_->page();
        if (name.empty()) return {page, page->body};
        if (Node* node = page->Find(name)) return {page, node};
        for (Node* frame : page->Below("IFRAME")) {
            const auto inner = page->FramePage(*frame);
            if (Node* node = inner ? inner->Find(name) : nullptr) return {inner, node};
        }
        throw std::logic_error("the page has no " + name);
    }
    Spot Active() const {
        auto page = window_->page();
        if (page->active->IsFrame()) page = page->FramePage(*page->active);
        return {page, page->active};
    }
    void MoveFocus(const Spot& spot) {
        const Spot before = Active();
        if (before.node == spot.node) return;
        const bool leaves = before.node != before.page->body;
        if (leaves) Fire(*before.page, &DocumentEvents::onbeforedeactivate);
        before.page->active = before.page->body;
        const auto top = window_->page();
        if (spot.page != top && top->active != spot.page->frame) {
            top->active = spot.page->frame;
            Fire(*top, &DocumentEvents::onfocusin);
        }
        spot.page->active = spot.node;
        if (spot.node != spot.page->body) Fire(*spot.page, &DocumentEvents::onfocusin);
    }
    void Submit(const Node* form) {
        if (!form) return;
        Fire(*Active().page, &DocumentEvents::onsubmit);
        if (form->Has("action")) Leave(form->Attribute("action"));
    }
    void Leave(const std::string& address) {
        window_->subscribers.ForEach([&](BrowserEvents& e) { e.BeforeNavigate2(address); });
        window_->page()->Leave();
        window_->Load(address);
    }

    ScriptedWeb& web_;
    std::shared_ptr<ScriptedBrowser> window_;
};

}  // namespace tamrin::test
