#include "support/scripted_page.h"

#include <algorithm>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

using Page = std::shared_ptr<ScriptedPage>;

std::string Label(const Node& node) {
    for (const char* key : {"id", "name", "href"}) {
        if (node.Has(key)) return node.Attribute(key);
    }
    return node.tag;
}

bool IsSubmit(const Node& node) {
    const std::string type = node.Attribute("type");
    if (node.tag == "BUTTON" && type.empty()) return true;
    return (node.tag == "INPUT" || node.tag == "BUTTON") && (type == "submit" || type == "image");
}

bool IsFrame(const Node& node) { return node.tag == "IFRAME" || node.tag == "FRAME"; }

class ScriptedElement : public ElementObject {
public:
    ScriptedElement(Page page, Node& node) : page_(std::move(page)), node_(node) {}

    std::string Get(std::string_view property) override {
        const auto state = page_->StateOf(node_);
        if (!state) return "";
        if (property == "tagName") return node_.tag;
        if (property == "value") return state->value;
        if (property == "checked") return state->checked ? "True" : "False";
        if (property == "selectedIndex") return std::to_string(state->selected);
        if (property == "innerText") return node_.InnerText();
        if (property == "outerHTML") return node_.OuterHtml();
        if (property == "length") return std::to_string(node_.Below("OPTION").size());
        return node_.Attribute(std::string(property));
    }
    bool Put(std::string_view property, std::string_view value) override {
        Note("put", std::string(property) + "=" + std::string(value));
        if (Label(node_) == page_->web().refuses_value) return false;
        if (property == "value") node_.value = value;
        if (property == "checked") node_.checked = value == "True";
        if (property == "selectedIndex") node_.selected = std::stoi(std::string(value));
        return true;
    }
    std::optional<std::string> getAttribute(std::string_view name) override {
        if (!page_->StateOf(node_)) return std::nullopt;
        if (name == "type" && node_.tag == "SELECT") return "select-one";
        if (name == "type" && node_.tag == "TEXTAREA") return "textarea";
        if (name == "type" && node_.tag == "INPUT" && !node_.Has("type")) return "text";
        const std::string key(name);
        if (!node_.Has(key)) return std::nullopt;
        return node_.Attribute(key);
    }
    Element parentElement() override {
        return node_.parent ? page_->MakeElement(*node_.parent) : Element();
    }
    Element form() override { return ElementOf(ScriptedPage::FormOf(&node_)); }
    Element DefaultButton() override { return ElementOf(ScriptedPage::DefaultButton(node_)); }
    std::vector<std::string> OptionTexts() override {
        std::vector<std::string> texts;
        for (const Node* option : node_.Below("OPTION")) texts.push_back(option->InnerText());
        return texts;
    }
    bool fireEvent(std::string_view event) override {
        Note("fire", std::string(event));
        return !page_->gone();
    }
    bool click() override {
        Note("click", "");
        return true;
    }
    void scrollIntoView() override { Note("scroll", ""); }
    void Outline() override { Note("outline", ""); }
    std::optional<Rect> getBoundingClientRect() override {
        const double side = node_.Has("tiny") ? 6 : 20;
        return Rect{10, 20, 10 + side, 20 + side};
    }
    bool Same(const ElementObject& other) const override {
        const auto* element = dynamic_cast<const ScriptedElement*>(&other);
        return element && &element->node_ == &node_;
    }

private:
    Element ElementOf(Node* node) const { return node ? page_->MakeElement(*node) : Element(); }
    void Note(const std::string& what, const std::string& detail) {
        page_->web().Note(what + " " + Label(node_) + (detail.empty() ? "" : " " + detail));
    }

    Page page_;
    Node& node_;
};

class Subscription : public Connection {
public:
    Subscription(Page page, DocumentEvents& events) : page_(std::move(page)), events_(&events) {
        page_->subscribers().push_back(events_);
    }
    ~Subscription() override {
        auto& all = page_->subscribers();
        all.erase(std::find(all.begin(), all.end(), events_));
    }

private:
    Page page_;
    DocumentEvents* events_;
};

class ScriptedDocument : public DocumentObject {
public:
    explicit ScriptedDocument(Page page) : page_(std::move(page)) {}

    std::string url() override { return page_->address(); }
    bool hasFocus() override { return true; }
    Element activeElement() override {
        Node* const active = page_->active();
        return active ? page_->MakeElement(*active) : Element();
    }
    std::vector<Element> getElementsByTagName(std::string_view tag) override {
        ++page_->web().lookups;
        return Elements(page_->root().Below(tag));
    }
    NamedElements Named(std::string_view name) override {
        ++page_->web().lookups;
        NamedElements named;
        for (Node* node : page_->root().Below("*")) {
            if (node->Has("name") && node->Attribute("name") == name) {
                named.by_name.push_back(page_->MakeElement(*node));
            }
            if (!named.by_id && node->Has("id") && node->Attribute("id") == name) {
                named.by_id = page_->MakeElement(*node);
            }
        }
        for (Node* form : page_->root().Below("FORM")) {
            for (Node* node : form->Below("*")) {
                if (node->Attribute("name") != name && node->Attribute("id") != name) continue;
                named.in_forms.push_back(page_->MakeElement(*node));
                break;
            }
        }
        return named;
    }
    std::vector<Element> links() override {
        ++page_->web().lookups;
        return Elements(page_->root().Below("A"));
    }
    std::vector<Frame> frames() override {
        std::vector<Frame> frames;
        if (page_->gone()) return frames;
        for (Node* node : page_->root().Below("*")) {
            if (!IsFrame(*node)) continue;
            const Page inner = page_->FramePage(*node);
            frames.push_back({node->Attribute("name"), inner ? inner->MakeDocument() : Document(),
                              page_->MakeElement(*node)});
        }
        return frames;
    }
    std::unique_ptr<Connection> Connect(DocumentEvents& events) override {
        return page_->gone() ? nullptr : std::make_unique<Subscription>(page_, events);
    }

private:
    std::vector<Element> Elements(const std::vector<Node*>& nodes) const {
        std::vector<Element> elements;
        for (Node* node : nodes) {
            if (!page_->gone()) elements.push_back(page_->MakeElement(*node));
        }
        return elements;
    }

    Page page_;
};

}  // namespace

ScriptedPage::ScriptedPage(ScriptedWeb& web, std::string address, const std::string& html)
    : web_(web), address_(std::move(address)), root_(ParseHtml(html)) {
    root_->tag = "BODY";
    active_ = &Body();
}

Node& ScriptedPage::Body() {
    const auto bodies = root_->Below("BODY");
    return bodies.empty() ? *root_ : *bodies.front();
}

Node* ScriptedPage::FormOf(Node* node) {
    while (node && node->tag != "FORM") node = node->parent;
    return node;
}

Node* ScriptedPage::DefaultButton(Node& node) {
    Node* const form = FormOf(&node);
    if (!form) return nullptr;
    for (Node* button : form->Below("*")) {
        if (IsSubmit(*button)) return button;
    }
    return nullptr;
}

Page ScriptedPage::Load(ScriptedWeb& web, const std::string& address) {
    const auto html = web.pages.find(address);
    if (html == web.pages.end()) return nullptr;
    return std::make_shared<ScriptedPage>(web, address, html->second);
}

Node* ScriptedPage::Find(const std::string& name) {
    for (Node* node : root_->Below("*")) {
        if (node->Attribute("id") == name || node->Attribute("name") == name) return node;
    }
    return nullptr;
}

Page ScriptedPage::FramePage(Node& frame) {
    auto& page = frames_[&frame];
    if (!page || page->gone()) page = Load(web_, frame.Attribute("src"));
    return page;
}

ScriptedPage::Moment ScriptedPage::Now() const {
    Moment moment{active_, {}};
    for (Node* node : {active_, active_ ? DefaultButton(*active_) : nullptr}) {
        if (node) moment.states[node] = {node->value, node->checked, node->selected};
    }
    return moment;
}

std::optional<ScriptedPage::State> ScriptedPage::StateOf(Node& node) const {
    if (moment_) {
        const auto kept = moment_->states.find(&node);
        if (kept != moment_->states.end()) return kept->second;
        // The parent and the form of the active element are kept as well, and have no state.
        for (const Node* up = moment_->active; up; up = up->parent) {
            if (up == &node) return State{};
        }
    }
    if (gone_) return std::nullopt;
    return State{node.value, node.checked, node.selected};
}

void ScriptedPage::Leave() {
    gone_ = true;
    active_ = nullptr;
    for (const auto& [frame, page] : frames_) {
        if (page) page->Leave();
    }
}

void ScriptedPage::During(const Moment& moment, const std::function<void()>& act) {
    moment_ = &moment;
    act();
    moment_ = nullptr;
}

void ScriptedPage::Tell(const Moment& moment, const std::function<void(DocumentEvents&)>& tell) {
    During(moment, [&] {
        for (DocumentEvents* events : std::vector<DocumentEvents*>(subscribers_)) tell(*events);
    });
}

Document ScriptedPage::MakeDocument() {
    return Document(std::make_shared<ScriptedDocument>(shared_from_this()));
}

Element ScriptedPage::MakeElement(Node& node) {
    return Element(std::make_shared<ScriptedElement>(shared_from_this(), node));
}

Document MakeDocument(ScriptedWeb& web, const std::string& address) {
    const Page page = ScriptedPage::Load(web, address);
    return page ? page->MakeDocument() : Document();
}

}  // namespace tamrin::test
