#pragma once

#include <functional>
#include <map>
#include <set>
#include <utility>

#include "platform/subscribers.h"
#include "support/html_page.h"

namespace tamrin::test {

// A small web of pages in memory. `calls` records all that is done to them and to the browser that
// shows them, in order.
struct ScriptedSite {
    std::map<std::string, std::string> pages;  // HTML by address
    // Runs when a call is recorded that equals the key.
    std::map<std::string, std::function<void()>> on_call;
    std::set<std::string> failing;  // the calls that are recorded but answer false

    std::vector<std::string> calls;
    int lookups = 0;  // how often a page was asked for elements

    bool Note(const std::string& call) {
        calls.push_back(call);
        if (const auto action = on_call[call]) action();  // which may change the tables
        return !failing.contains(call);
    }
};

// A loaded page. Once it is gone, reads answer nothing.
class ScriptedPage : public DocumentObject, public std::enable_shared_from_this<ScriptedPage> {
public:
    ScriptedPage(ScriptedSite& its_site, const std::string& address)
        : site(its_site), address_(address), root_(ParseHtml(site.pages.at(address))) {
        root_->tag = "BODY";
        const auto bodies = root_->Below("BODY");
        active = body = bodies.empty() ? root_.get() : bodies[0];
    }

    // The page of that address, null when there is none.
    static std::shared_ptr<ScriptedPage> Load(ScriptedSite& site, const std::string& url) {
        return site.pages.contains(url) ? std::make_shared<ScriptedPage>(site, url) : nullptr;
    }

    ScriptedSite& site;
    Node* body;  // what is active when nothing has the focus
    Node* active;
    Node* frame = nullptr;  // that holds the page
    Subscribers<DocumentEvents> subscribers;

    // The elements with that tag, "*" for all.
    std::vector<Node*> Below(std::string_view tag) { return root_->Below(tag); }
    // The element with that id or name; null when there is none.
    Node* Find(const std::string& name) {
        for (Node* node : Below("*")) {
            if (node->Attribute("id") == name || node->Attribute("name") == name) return node;
        }
        return nullptr;
    }
    // The page in a frame, the same one at each call until it is gone.
    std::shared_ptr<ScriptedPage> FramePage(Node& holder) {
        auto& page = frames_[&holder];
        if (!page || page->gone()) page = Load(site, holder.Attribute("src"));
        if (page) page->frame = &holder;
        return page;
    }
    // Goes away with the pages in its frames.
    void Leave() {
        if (!gone()) left_ = std::exchange(root_, std::make_unique<Node>());
        for (const auto& [holder, page] : frames_) {
            if (page) page->Leave();
        }
    }
    bool gone() const { return left_ != nullptr; }

    Element MakeElement(Node* node);  // null for none

    std::string url() override { return address_; }
    bool hasFocus() override { return true; }
    Element activeElement() override { return MakeElement(gone() ? nullptr : active); }
    std::vector<Element> getElementsByTagName(std::string_view tag) override {
        ++site.lookups;
        std::vector<Element> elements;
        for (Node* node : Below(tag)) elements.push_back(MakeElement(node));
        return elements;
    }
    NamedElements Named(std::string_view name) override {
        ++site.lookups;
        NamedElements named;
        std::set<const Node*> forms{nullptr};  // that have one already
        for (Node* node : Below("*")) {
            const bool by_name = node->Has("name") && node->Attribute("name") == name;
            const bool by_id = node->Has("id") && node->Attribute("id") == name;
            if (by_name) named.by_name.push_back(MakeElement(node));
            if (by_id && !named.by_id) named.by_id = MakeElement(node);
            const bool first = (by_name || by_id) && forms.insert(node->Form()).second;
            if (first) named.in_forms.push_back(MakeElement(node));
        }
        return named;
    }
    std::vector<Element> links() override { return getElementsByTagName("A"); }
    std::vector<Frame> frames() override {
        std::vector<Frame> all;
        for (Node* node : Below("IFRAME")) {
            all.push_back({node->Attribute("name"), Document(FramePage(*node)), MakeElement(node)});
        }
        return all;
    }
    std::unique_ptr<Connection> Connect(DocumentEvents& events) override {
        return gone() ? nullptr : subscribers.Connect(events);
    }

private:
    std::string address_;
    std::unique_ptr<Node> root_;
    std::unique_ptr<Node> left_;  // the nodes of a page that is gone
    std::map<Node*, std::shared_ptr<ScriptedPage>> frames_;
};

class ScriptedElement : public ElementObject {
public:
    ScriptedElement(std::shared_ptr<ScriptedPage> page, Node& node)
        : page_(std::move(page)), node_(node) {}

    std::string Get(std::string_view property) override {
        if (page_->gone()) return "";
        if (property == "tagName") return node_.tag;
        if (property == "value") return node_.value;
        if (property == "checked") return node_.checked ? "True" : "False";
        if (property == "selectedIndex") return std::to_string(node_.selected);
        if (property == "innerText") return node_.InnerText();
        if (property == "outerHTML") return node_.OuterHtml();
        if (property == "length") return std::to_string(node_.Below("OPTION").size());
        return node_.Attribute(std::string(property));
    }
    bool Put(std::string_view property, std::string_view value) override {
        if (!Note("put", " " + std::string(property).append("=").append(value))) return false;
        if (property == "value") node_.value = value;
        if (property == "checked") node_.checked = value == "True";
        if (property == "selectedIndex") node_.selected = std::stoi(std::string(value));
        return true;
    }
    std::optional<std::string> getAttribute(std::string_view name) override {
        if (page_->gone()) return std::nullopt;
        if (name == "type" && node_.tag == "SELECT") return "select-one";
        if (name == "type" && node_.tag == "TEXTAREA") return "textarea";
        if (name == "type" && node_.tag == "INPUT" && !node_.Has("type")) return "text";
        const auto found = node_.attributes.find(std::string(name));
        return found == node_.attributes.end() ? std::nullopt : std::optional(found->second);
    }
    Element parentElement() override { return page_->MakeElement(node_.parent); }
    Element form() override { return page_->MakeElement(node_.Form()); }
    Element DefaultButton() override {
        for (Node* button : node_.Form() ? node_.Form()->Below("*") : std::vector<Node*>()) {
            if (button->IsSubmit()) return page_->MakeElement(button);
        }
        return Element();
    }
    std::vector<std::string> OptionTexts() override {
        std::vector<std::string> texts;
        for (const Node* option : node_.Below("OPTION")) texts.push_back(option->InnerText());
        return texts;
    }
    bool fireEvent(std::string_view event) override {
        return Note("fire", " " + std::string(event));
    }
    bool click() override { return Note("click"); }
    void scrollIntoView() override { Note("scroll"); }
    void Outline() override { Note("outline"); }
    std::optional<Rect> getBoundingClientRect() override {
        const double side = node_.Has("tiny") ? 6 : 20;
        return Rect{10, 20, 10 + side, 20 + side};
    }
    bool Same(const ElementObject& other) const override {
        return &static_cast<const ScriptedElement&>(other).node_ == &node_;
    }

private:
    // Names the element by its first key, or its tag.
    bool Note(const std::string& what, const std::string& detail = "") {
        std::string label = node_.tag;
        for (const char* key : {"href", "name", "id"}) {
            if (node_.Has(key)) label = node_.Attribute(key);
        }
        return page_->site.Note(what + " " + label + detail);
    }

    std::shared_ptr<ScriptedPage> page_;
    Node& node_;
};

inline Element ScriptedPage::MakeElement(Node* node) {
    return node ? Element(std::make_shared<ScriptedElement>(shared_from_this(), *node)) : Element();
}

}  // namespace tamrin::test
