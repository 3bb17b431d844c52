#pragma once

#include <memory>
#include <string>

#include "support/scripted_browser.h"

namespace tamrin::test {

// A person at work in a window of the scripted browser. The events arrive as those of a browser do:
// in order, later, each with its snapshot of the page. Elements are named by id or name, in the
// page or in a frame of it.
class ScriptedUser {
public:
    ScriptedUser(ScriptedWeb& web, std::shared_ptr<ScriptedBrowser> window)
        : web_(web), window_(std::move(window)) {}

    // Brings the focus to an element; "" to none, as a click beside everything does.
    void Focus(const std::string& name);
    void Type(const std::string& name, const std::string& text);
    // Clicks it: a link, or a submit button of a form with an action, leads there.
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
    template <class Event, class... Arguments>
    void Tell(const Spot& spot, Event event, Arguments... arguments);

    ScriptedWeb& web_;
    std::shared_ptr<ScriptedBrowser> window_;
};

}  // namespace tamrin::test
