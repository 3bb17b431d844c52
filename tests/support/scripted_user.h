#pragma once

#include <stdexcept>

#include "support/scripted_browser.h"

namespace tamrin::test {

// A person at work in a window of the scripted browser. What he does happens in DoEvents, one act
// behind the other. Elements are named by id or name, in the page or in a frame of it.
class ScriptedUser {
public:
    ScriptedUser(ScriptedWeb& web, std::shared_ptr<ScriptedBrowser> window)
        : web_(web), window_(std::move(window)) {}

    // Brings the focus to an element, or to the one around it that takes it, and does `act` there.
    // "" is beside everything.
    void Focus(const std::string& name, const std::function<void(Node&)>& act = [](Node&) {}) {
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
    void Type(const std::string& name, const std::string& text) {
        Focus(name, [=](Node& node) { node.value = text; });
    }
    // Clicks it: a link, or a submit button of a form with an action, leads there.
    void Click(const std::string& name) {
        Focus(name, [this](Node& node) {
            if (node.Attribute("type") == "radio") node.checked = true;
            Fire(*Active().page, &DocumentEvents::onclick);
            if (web_.pages.contains(node.Attribute("href"))) Leave(node.Attribute("href"));
            if (node.IsSubmit()) Submit(node.Form());
        });
    }
    // Presses Enter in the active field of a form.
    void Enter() {
        web_.events.emplace_back([this] {
            const Spot field = Active();
            field.page->subscribers.ForEach([](DocumentEvents& e) { e.onkeypress(13); });
            // The browser itself clicks the submit button; the focus stays in the field.
            Fire(*field.page, &DocumentEvents::onclick);
            Submit(field.node->Form());
        });
    }
    // Enters an address.
    void GoTo(const std::string& address) {
        web_.events.emplace_back([=, this] { Leave(address); });
    }

private:
    struct Spot {
        std::shared_ptr<ScriptedPage> page;
        Node* node = nullptr;
    };
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
