#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

// A loaded page; elements keep it alive.
struct Page {
    ScriptedWeb& web;
    std::string address;
    std::unique_ptr<Node> root;
};

std::string Label(const Node& node) {
    for (const char* key : {"id", "name", "href"}) {
        if (node.Has(key)) return node.Attribute(key);
    }
    return node.tag;
}

class ScriptedElement : public ElementObject {
public:
    ScriptedElement(std::shared_ptr<Page> page, Node& node) : page_(std::move(page)), node_(node) {}

    std::string Get(std::string_view property) override {
        if (property == "tagName") return node_.tag;
        if (property == "value") return node_.value;
        if (property == "checked") return node_.checked ? "True" : "False";
        if (property == "selectedIndex") return std::to_string(node_.selected);
        if (property == "innerText") return node_.InnerText();
        if (property == "length") return std::to_string(node_.Below("OPTION").size());
        return node_.Attribute(std::string(property));
    }
    bool Put(std::string_view property, std::string_view value) override {
        Note("put", std::string(property) + "=" + std::string(value));
        if (Label(node_) == page_->web.refuses_value) return false;
        if (property == "value") node_.value = value;
        if (property == "checked") node_.checked = value == "True";
        if (property == "selectedIndex") node_.selected = std::stoi(std::string(value));
        return true;
    }
    std::optional<std::string> getAttribute(std::string_view name) override {
        if (name == "type" && node_.tag == "SELECT") return "select-one";
        if (name == "type" && node_.tag == "TEXTAREA") return "textarea";
        if (name == "type" && node_.tag == "INPUT" && !node_.Has("type")) return "text";
        const std::string key(name);
        if (!node_.Has(key)) return std::nullopt;
        return node_.Attribute(key);
    }
    Element parentElement() override { return node_.parent ? Make(*node_.parent) : Element(); }
    Element form() override {
        for (Node* node = &node_; node; node = node->parent) {
            if (node->tag == "FORM") return Make(*node);
        }
        return Element();
    }
    std::vector<std::string> OptionTexts() override {
        std::vector<std::string> texts;
        for (const Node* option : node_.Below("OPTION")) texts.push_back(option->InnerText());
        return texts;
    }
    bool fireEvent(std::string_view event) override {
        Note("fire", std::string(event));
        return true;
    }
    bool click() override {
        Note("click", "");
        return true;
    }
    void scrollIntoView() override { Note("scroll", ""); }
    std::optional<Rect> getBoundingClientRect() override {
        const double side = node_.Has("tiny") ? 6 : 20;
        return Rect{10, 20, 10 + side, 20 + side};
    }
    bool Same(const ElementObject& other) const override {
        const auto* element = dynamic_cast<const ScriptedElement*>(&other);
        return element && &element->node_ == &node_;
    }

private:
    Element Make(Node& node) const {
        return Element(std::make_shared<ScriptedElement>(page_, node));
    }
    void Note(const std::string& what, const std::string& detail) {
        page_->web.Note(what + " " + Label(node_) + (detail.empty() ? "" : " " + detail));
    }

    std::shared_ptr<Page> page_;
    Node& node_;
};

class ScriptedDocument : public DocumentObject {
public:
    explicit ScriptedDocument(std::shared_ptr<Page> page) : page_(std::move(page)) {}

    std::string url() override { return page_->address; }
    bool hasFocus() override { return true; }
    Element activeElement() override { return Element(); }
    std::vector<Element> getElementsByTagName(std::string_view tag) override {
        ++page_->web.lookups;
        std::vector<Element> elements;
        for (Node* node : page_->root->Below(tag)) elements.push_back(Make(*node));
        return elements;
    }
    NamedElements Named(std::string_view name) override {
        ++page_->web.lookups;
        NamedElements named;
        for (Node* node : page_->root->Below("*")) {
            if (node->Has("name") && node->Attribute("name") == name) {
                named.by_name.push_back(Make(*node));
            }
            if (!named.by_id && node->Has("id") && node->Attribute("id") == name) {
                named.by_id = Make(*node);
            }
        }
        for (Node* form : page_->root->Below("FORM")) {
            for (Node* node : form->Below("*")) {
                if (node->Attribute("name") != name && node->Attribute("id") != name) continue;
                named.in_forms.push_back(Make(*node));
                break;
            }
        }
        return named;
    }
    std::vector<Element> links() override {
        ++page_->web.lookups;
        std::vector<Element> elements;
        for (Node* node : page_->root->Below("A")) elements.push_back(Make(*node));
        return elements;
    }
    std::vector<Frame> frames() override {
        std::vector<Frame> frames;
        for (Node* node : page_->root->Below("*")) {
            if (node->tag != "IFRAME" && node->tag != "FRAME") continue;
            frames.push_back({node->Attribute("name"),
                              MakeDocument(page_->web, node->Attribute("src")), Make(*node)});
        }
        return frames;
    }

private:
    Element Make(Node& node) const {
        return Element(std::make_shared<ScriptedElement>(page_, node));
    }

    std::shared_ptr<Page> page_;
};

}  // namespace

Document MakeDocument(ScriptedWeb& web, const std::string& address) {
    const auto html = web.pages.find(address);
    if (html == web.pages.end()) return Document();
    return Document(std::make_shared<ScriptedDocument>(
        std::make_shared<Page>(Page{web, address, ParseHtml(html->second)})));
}

std::shared_ptr<Browser> ScriptedWeb::Create(std::string& why) {
    why = refusal;
    if (!refusal.empty()) return nullptr;
    auto made = std::make_shared<ScriptedBrowser>(*this);
    browser = made.get();
    Note("create");
    return made;
}

void ScriptedWeb::SetCursorPos(ScreenPoint point) {
    cursor_ = point;
    Note("pointer " + std::to_string(point.x) + "," + std::to_string(point.y));
}

bool ScriptedWeb::SendKeys(const std::vector<KeyStroke>& keys) {
    std::string call = "keys";
    for (const KeyStroke& key : keys) call += " " + key.text + key.name;
    Note(call);
    return true;
}

void ScriptedWeb::Note(const std::string& call) {
    calls.push_back(call);
    const auto found = on_call.find(call);
    if (found == on_call.end()) return;
    const auto action = found->second;  // which may change the table
    action();
}

class ScriptedBrowser::Subscription : public Connection {
public:
    explicit Subscription(std::shared_ptr<ScriptedBrowser> browser)
        : browser_(std::move(browser)) {}
    ~Subscription() override { browser_->events_ = nullptr; }

private:
    std::shared_ptr<ScriptedBrowser> browser_;
};

bool ScriptedBrowser::Navigate(const std::string& address) {
    if (!alive_) return false;
    web_.Note("navigate " + address);
    ++loading_;
    const auto self = shared_from_this();
    web_.clock().At(web_.clock().Elapsed() + static_cast<std::uint64_t>(web_.load_ms),
                    [this, self, address] {
                        --loading_;
                        document_ = MakeDocument(web_, address);
                        if (events_ && document_) events_->DocumentComplete(true);
                        if (events_ && !document_) events_->NavigateError(address, "no page");
                    });
    return true;
}

void ScriptedBrowser::Quit() {
    web_.Note("quit");
    alive_ = false;
}

void ScriptedBrowser::Die() {
    alive_ = false;
    if (events_) events_->OnQuit();
}

void ScriptedBrowser::SetPlace(const WindowPlace& place) {
    web_.Note("place " + std::to_string(place.left) + "," + std::to_string(place.top) + "," +
              std::to_string(place.width) + "," + std::to_string(place.height));
}

void ScriptedBrowser::SetBars(const WindowBars& bars) {
    std::string call = "bars ";
    for (const bool shown : {bars.tool, bars.menu, bars.address, bars.status}) {
        call += shown ? '1' : '0';
    }
    web_.Note(call);
}

std::optional<ScreenPoint> ScriptedBrowser::ElementScreenPoint(const Element& element) {
    if (!element || !web_.has_screen_points) return std::nullopt;
    return ScreenPoint{100, 100};
}

std::unique_ptr<Connection> ScriptedBrowser::Connect(BrowserEvents& events) {
    events_ = &events;
    return std::make_unique<Subscription>(shared_from_this());
}

}  // namespace tamrin::test
