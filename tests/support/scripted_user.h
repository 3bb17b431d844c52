#pragma once

#include <memory>
#include <string>

#include "support/scripted_browser.h"

namespace tamrin::test {

// A person at work in a window of the scripted browser. What happens is told as a browser tells it:
// in the order in which it happened, later, and with the moment. Elements are named by id or name,
// in the page or in a frame of it.
class ScriptedUser {
public:
    ScriptedUser(ScriptedWeb& web, std::shared_ptr<ScriptedBrowser> window)
        : web_(web), window_(std::move(window)) {}

    // Brings the focus to an element; "" to none, as a click beside everything does.
    void Focus(const std::string& name);
    // Comes back from another window: the active element gets the focus again.
    void ComeBack() {
        Tell(Active(), [](DocumentEvents& e) { e.onfocusin(); });
    }
    void Type(const std::string& name, const std::string& text);
    void Choose(const std::string& name, int index);
    // Clicks it: what has a link, or is a submit button of a form with an action, leads there.
    void Click(const std::string& name);
    // Presses Enter in the active field.
    void Enter();
    // Enters an address.
    void GoTo(const std::string& address);

private:
    struct Spot {
        std::shared_ptr<ScriptedPage> page;
        Node* node = nullptr;
        Node* frame = nullptr;  // that holds the page
    };
    Spot Find(const std::string& name) const;
    Spot Active() const;
    void Focus(const Spot& spot);
    void Tell(const Spot& spot, const std::function<void(DocumentEvents&)>& event);

    ScriptedWeb& web_;
    std::shared_ptr<ScriptedBrowser> window_;
};

// The windows that a user has open.
class ScriptedWindows : public BrowserWindows {
public:
    std::vector<std::shared_ptr<Browser>> visible;
    std::shared_ptr<Browser> focused;
    std::shared_ptr<Browser> opens;  // the window that Open answers
    std::string refusal;             // why none can be opened
    std::vector<std::string> opened;
    int focus_questions = 0;

    std::vector<std::shared_ptr<Browser>> Visible() override { return visible; }
    std::shared_ptr<Browser> Focused() override {
        ++focus_questions;
        return focused;
    }
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override {
        opened.push_back(address);
        why = refusal;
        return refusal.empty() ? opens : nullptr;
    }
};

}  // namespace tamrin::test
