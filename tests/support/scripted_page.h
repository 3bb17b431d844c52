#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/document.h"
#include "support/html_page.h"

namespace tamrin::test {

class ScriptedWeb;

// A loaded page; its documents and elements keep it alive. Once it is gone, reads answer nothing,
// except those of the moment that an event brings with it.
class ScriptedPage : public std::enable_shared_from_this<ScriptedPage> {
public:
    ScriptedPage(ScriptedWeb& web, std::string address, const std::string& html);

    // How an element is, or was when an event happened.
    struct State {
        std::string value;
        bool checked = false;
        int selected = -1;
    };

    // What an event keeps of the page.
    struct Moment {
        Node* active = nullptr;
        std::map<Node*, State> states;  // of the active element and its form's default button
    };

    // A page that there is not: null.
    static std::shared_ptr<ScriptedPage> Load(ScriptedWeb& web, const std::string& address);

    ScriptedWeb& web() { return web_; }
    const std::string& address() const { return address_; }
    Node& root() { return *root_; }
    // The element with that id or name; null when there is none.
    Node* Find(const std::string& name);
    // What is active when nothing has the focus.
    Node& Body();
    // The form of an element; null when it is in none.
    static Node* FormOf(Node* node);
    // The first submit button of the form of an element, which Enter presses; null when there is
    // none.
    static Node* DefaultButton(Node& node);
    // The page in a frame, the same one at each call.
    std::shared_ptr<ScriptedPage> FramePage(Node& frame);

    Node* active() const { return moment_ ? moment_->active : active_; }
    void SetActive(Node* node) { active_ = node; }
    Moment Now() const;
    // The element's state; nothing when the page is gone.
    std::optional<State> StateOf(Node& node) const;

    void Leave();
    bool gone() const { return gone_; }

    // Runs `act` as if that moment were now.
    void During(const Moment& moment, const std::function<void()>& act);
    // Runs `tell` for each subscriber in that moment.
    void Tell(const Moment& moment, const std::function<void(DocumentEvents&)>& tell);
    std::vector<DocumentEvents*>& subscribers() { return subscribers_; }

    Document MakeDocument();
    Element MakeElement(Node& node);

private:
    ScriptedWeb& web_;
    std::string address_;
    std::unique_ptr<Node> root_;
    std::map<Node*, std::shared_ptr<ScriptedPage>> frames_;
    Node* active_;
    const Moment* moment_ = nullptr;
    bool gone_ = false;
    std::vector<DocumentEvents*> subscribers_;
};

}  // namespace tamrin::test
