#include "support/scripted_page.h"

#include <set>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

class ScriptedElement : public ElementObject {
public:
    ScriptedElement(std::shared_ptr<ScriptedPage> page, Node& node)
        : page_(std::move(page)), node_(node) {}

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
        Note("put", std::string(property).append("=").append(value));
        if (Label() == page_->web().refuses_value) return false;
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
        const auto found = node_.attributes.find(std::string(name));
        return found == node_.attributes.end() ? std::nullopt : std::optional(found->second);
    }
    Element parentElement() override { return page_->MakeElement(node_.parent); }
    Element form() override { return page_->MakeElement(node_.Form()); }
    Element DefaultButton() override { return page_->MakeElement(node_.DefaultButton()); }
    std::vector<std::string> OptionTexts() override {
        std::vector<std::string> texts;
        for (const Node* option : node_.Below("OPTION")) texts.push_back(option->InnerText());
        return texts;
    }
    bool fireEvent(std::string_view event) override {
        Note("fire", event);
        return !page_->gone();
    }
    bool click() override {
        Note("click");
        return true;
    }
    void scrollIntoView() override { Note("scroll"); }
    void Outline() override { Note("outline"); }
    std::optional<Rect> getBoundingClientRect() override {
        const double side = node_.Has("tiny") ? 6 : 20;
        return Rect{10, 20, 10 + side, 20 + side};
    }
    bool Same(const ElementObject& other) const override {
        const auto* element = dynamic_cast<const ScriptedElement*>(&other);
        return element && &element->node_ == &node_;
    }

private:
    std::string Label() const {
        for (const char* key : {"id", "name", "href"}) {
            if (node_.Has(key)) return node_.Attribute(key);
        }
        return node_.tag;
    }
    void Note(const std::string& what, std::string_view detail = "") {
        page_->web().Note((what + " " + Label()).append(detail.empty() ? "" : " ").append(detail));
    }

    std::shared_ptr<ScriptedPage> page_;
    Node& node_;
};

}  // namespace

ScriptedPage::ScriptedPage(ScriptedWeb& web, std::string address, const std::string& html)
    : web_(web), address_(std::move(address)), root_(ParseHtml(html)) {
    root_->tag = "BODY";
    active_ = &Body();
}

std::shared_ptr<ScriptedPage> ScriptedPage::Load(ScriptedWeb& web, const std::string& address) {
    const auto html = web.pages.find(address);
    if (html == web.pages.end()) return nullptr;
    return std::make_shared<ScriptedPage>(web, address, html->second);
}

Node& ScriptedPage::Body() {
    const auto bodies = root_->Below("BODY");
    return bodies.empty() ? *root_ : *bodies.front();
}

Node* ScriptedPage::Find(const std::string& name) {
    for (Node* node : root_->Below("*")) {
        if (node->Attribute("id") == name || node->Attribute("name") == name) return node;
    }
    return nullptr;
}

std::shared_ptr<ScriptedPage> ScriptedPage::FramePage(Node& frame) {
    auto& page = frames_[&frame];
    if (!page || page->gone()) page = Load(web_, frame.Attribute("src"));
    return page;
}

std::optional<NodeState> ScriptedPage::StateOf(const Node& node) const {
    if (moment_ && moment_->states.contains(&node)) return moment_->states.at(&node);
    return gone_ ? std::nullopt : std::optional<NodeState>(node);
}

ScriptedPage::Moment ScriptedPage::Now() const {
    Moment moment{active_, {}};
    for (const Node* node = active_; node; node = node->parent) moment.states[node] = *node;
    const Node* const button = active_ ? active_->DefaultButton() : nullptr;
    if (button) moment.states[button] = *button;
    return moment;
}

void ScriptedPage::During(const Moment& moment, const std::function<void()>& act) {
    moment_ = &moment;
    act();
    moment_ = nullptr;
}

void ScriptedPage::Leave() {
    gone_ = true;
    active_ = nullptr;
    for (const auto& [frame, page] : frames_) {
        if (page) page->Leave();
    }
}

Element ScriptedPage::MakeElement(Node* node) {
    return node ? Element(std::make_shared<ScriptedElement>(shared_from_this(), *node)) : Element();
}

std::vector<Element> ScriptedPage::getElementsByTagName(std::string_view tag) {
    ++web_.lookups;
    std::vector<Element> elements;
    for (Node* node : gone_ ? std::vector<Node*>() : root_->Below(tag)) {
        elements.push_back(MakeElement(node));
    }
    return elements;
}

NamedElements ScriptedPage::Named(std::string_view name) {
    ++web_.lookups;
    NamedElements named;
    std::set<const Node*> forms;  // that have one already
    for (Node* node : root_->Below("*")) {
        const bool by_name = node->Has("name") && node->Attribute("name") == name;
        const bool by_id = node->Has("id") && node->Attribute("id") == name;
        if (by_name) named.by_name.push_back(MakeElement(node));
        if (by_id && !named.by_id) named.by_id = MakeElement(node);
        if ((by_name || by_id) && node->Form() && forms.insert(node->Form()).second) {
            named.in_forms.push_back(MakeElement(node));
        }
    }
    return named;
}

std::vector<Frame> ScriptedPage::frames() {
    std::vector<Frame> frames;
    for (Node* node : gone_ ? std::vector<Node*>() : root_->Below("*")) {
        if (node->IsFrame())
            frames.push_back(
                {node->Attribute("name"), Document(FramePage(*node)), MakeElement(node)});
    }
    return frames;
}

}  // namespace tamrin::test
