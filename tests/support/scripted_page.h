#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/document.h"
#include "platform/subscribers.h"
#include "support/html_page.h"

namespace tamrin::test {

class ScriptedWeb;

// A loaded page. Once it is gone, reads answer nothing, except from the snapshot that an event
// brings with it.
class ScriptedPage : public DocumentObject, public std::enable_shared_from_this<ScriptedPage> {
public:
    // What an event keeps of the page: the active element, those around it and its form's default
    // button as they are when the event happens.
    struct Moment {
        Node* active = nullptr;
        std::map<const Node*, NodeState> states;
    };

    ScriptedPage(ScriptedWeb& web, std::string address, const std::string& html);

    // The page of that address, null when there is none.
    static std::shared_ptr<ScriptedPage> Load(ScriptedWeb& web, const std::string& address);

    ScriptedWeb& web() { return web_; }
    Node& root() { return *root_; }
    // The element with that id or name; null when there is none.
    Node* Find(const std::string& name);
    // What is active when nothing has the focus.
    Node& Body();
    // The page in a frame, the same one at each call until it is gone.
    std::shared_ptr<ScriptedPage> FramePage(Node& frame);

    Node* active() const { return moment_ ? moment_->active : active_; }
    void SetActive(Node* node) { active_ = node; }
    // The element's state; nothing when the page is gone.
    std::optional<NodeState> StateOf(const Node& node) const;
    Moment Now() const;
    // Runs `act` as if that moment were now.
    void During(const Moment& moment, const std::function<void()>& act);

    // Goes away with the pages in its frames.
    void Leave();
    bool gone() const { return gone_; }

    Element MakeElement(Node* node);  // null for none
    Subscribers<DocumentEvents> subscribers;

    std::string url() override { return address_; }
    bool hasFocus() override { return true; }
    Element activeElement() override { return MakeElement(active()); }
    std::vector<Element> getElementsByTagName(std::string_view tag) override;
    NamedElements Named(std::string_view name) override;
    std::vector<Element> links() override { return getElementsByTagName("A"); }
    std::vector<Frame> frames() override;
    std::unique_ptr<Connection> Connect(DocumentEvents& events) override {
        return gone_ ? nullptr : subscribers.Connect(events);
    }

private:
    ScriptedWeb& web_;
    std::string address_;
    std::unique_ptr<Node> root_;
    std::map<Node*, std::shared_ptr<ScriptedPage>> frames_;
    Node* active_;
    const Moment* moment_ = nullptr;
    bool gone_ = false;
};

}  // namespace tamrin::test
