#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "platform/browser.h"
#include "platform/subscribers.h"
#include "support/html_page.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

// A small web of pages in memory, the browser that shows it, and the mouse and keyboard before it.
// `calls` records everything that is done to them, in order.
class ScriptedWeb : public BrowserLauncher, public Input {
public:
    // Each DoEvents of the clock delivers the queued events: one at a time, also when a handler
    // handles events.
    explicit ScriptedWeb(VirtualClock& its_clock) : clock(its_clock) {
        clock.AddSource([this] {
            if (std::exchange(delivering_, true)) return;
            for (; !events.empty(); events.pop_front()) events.front()();
            delivering_ = false;
        });
    }

    VirtualClock& clock;
    std::map<std::string, std::string> pages;  // HTML by address
    std::uint64_t load_ms = 30;                // how long a page takes to load
    // Runs when a call is recorded that equals the key.
    std::map<std::string, std::function<void()>> on_call;
    std::set<std::string> failing;  // the calls that are recorded but answer false
    std::string refusal;            // why no browser can be started; "" when one can
    std::optional<ScreenPoint> screen_point{{100, 100}};  // of every element
    bool busy = false;                                    // whether the browser is always busy

    std::vector<std::string> calls;
    int lookups = 0;                                 // how often a page was asked for elements
    std::shared_ptr<class ScriptedBrowser> browser;  // made last, null before the first
    std::deque<std::function<void()>> events;

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return *this; }

    ScreenPoint GetCursorPos() override { return cursor_; }
    void SetCursorPos(ScreenPoint point) override {
        cursor_ = point;
        Note("pointer " + std::to_string(point.x) + "," + std::to_string(point.y));
    }
    void LeftButton(bool down) override { Note(down ? "button down" : "button up"); }
    bool SendKeys(const std::vector<KeyStroke>& keys) override {
        std::string call = "keys";
        for (const KeyStroke& key : keys) call += " " + key.text + key.name;
        return Note(call);
    }

    bool Note(const std::string& call) {
        calls.push_back(call);
        if (const auto action = on_call[call]) action();  // which may change the tables
        return !failing.contains(call);
    }

private:
    bool delivering_ = false;
    ScreenPoint cursor_{3, 4};
};

// A loaded page. Once it is gone, reads answer nothing.
class ScriptedPage : public DocumentObject, public std::enable_shared_from_this<ScriptedPage> {
public:
    ScriptedPage(ScriptedWeb& its_web, const std::string& address)
        : web(its_web), address_(address), root_(ParseHtml(web.pages.at(address))) {
        root_->tag = "BODY";
        const auto bodies = root_->Below("BODY");
        active = body = bodies.empty() ? root_.get() : bodies[0];
    }

    // The page of that address, null when there is none.
    static std::shared_ptr<ScriptedPage> Load(ScriptedWeb& web, const std::string& address) {
        return web.pages.contains(address) ? std::make_shared<ScriptedPage>(web, address) : nullptr;
    }

    ScriptedWeb& web;
    Node* body;  // what is active when nothing has the focus
    Node* active;
    Subscribers<DocumentEvents> subscribers;

    Node& root() { return *root_; }
    // The element with that id or name; null when there is none.
    Node* Find(const std::string& name) {
        for (Node* node : root_->Below("*")) {
            if (node->Attribute("id") == name || node->Attribute("name") == name) return node;
        }
        return nullptr;
    }
    // The page in a frame, the same one at each call until it is gone.
    std::shared_ptr<ScriptedPage> FramePage(Node& frame) {
        auto& page = frames_[&frame];
        if (!page || page->gone()) page = Load(web, frame.Attribute("src"));
        return page;
    }
    // Goes away with the pages in its frames.
    void Leave() {
        if (!gone()) left_ = std::exchange(root_, std::make_unique<Node>());
        for (const auto& [frame, page] : frames_) {
            if (page) page->Leave();
        }
    }
    bool gone() const { return left_ != nullptr; }

    Element MakeElement(Node* node);  // null for none

    std::string url() override { return address_; }
    bool hasFocus() override { return true; }
    Element activeElement() override { return MakeElement(gone() ? nullptr : active); }
    std::vector<Element> getElementsByTagName(std::string_view tag) override {
        ++web.lookups;
        std::vector<Element> elements;
        for (Node* node : root_->Below(tag)) elements.push_back(MakeElement(node));
        return elements;
    }
    NamedElements Named(std::string_view name) override {
        ++web.lookups;
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
    std::vector<Element> links() override { return getElementsByTagName("A"); }
    std::vector<Frame> frames() override {
        std::vector<Frame> all;
        for (Node* node : root_->Below("IFRAME")) {
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
        return Note("fire", " " + std::string(event)) && !page_->gone();
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
        return page_->web.Note(what + " " + label + detail);
    }

    std::shared_ptr<ScriptedPage> page_;
    Node& node_;
};

inline Element ScriptedPage::MakeElement(Node* node) {
    return node ? Element(std::make_shared<ScriptedElement>(shared_from_this(), *node)) : Element();
}

class ScriptedBrowser : public Browser, public std::enable_shared_from_this<ScriptedBrowser> {
public:
    explicit ScriptedBrowser(ScriptedWeb& web) : web_(web) {}

    bool Navigate(const std::string& address) override {
        if (!alive_) return false;
        web_.Note("navigate " + address);
        Load(address);
        return true;
    }
    void Quit() override {
        web_.Note("quit");
        alive_ = false;
    }
    bool Busy() override { return alive_ && (web_.busy || loading_ > 0); }
    int ReadyState() override { return alive_ && page_ && loading_ == 0 ? 4 : 1; }
    bool Alive() override { return alive_; }
    Document document() override { return Document(alive_ ? page_ : nullptr); }
    void SetVisible(bool visible) override { web_.Note(visible ? "visible" : "hidden"); }
    void SetPlace(const WindowPlace& place) override {
        web_.Note("place " + std::to_string(place.left) + "," + std::to_string(place.top) + "," +
                  std::to_string(place.width) + "," + std::to_string(place.height));
    }
    void SetBars(const WindowBars& bars) override {
        web_.Note("bars " + std::to_string(bars.tool) + std::to_string(bars.menu) +
                  std::to_string(bars.address) + std::to_string(bars.status));
    }
    WindowState State() override { return {{0, 0, 1024, 768}, {true, true, true, true}, false}; }
    std::uint64_t Handle() override { return alive_ ? handle : 0; }
    void SetForeground() override { ++brought_to_front; }
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override {
        return element ? web_.screen_point : std::nullopt;
    }
    std::vector<Element> UnderPointer() override {
        std::vector<Element> path;
        std::shared_ptr<ScriptedPage> at = page_;
        for (const std::string& name : pointer) {
            Node* const node = at->Find(name);
            path.push_back(at->MakeElement(node));
            if (node) at = at->FramePage(*node);
        }
        return path;
    }
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override {
        return subscribers.Connect(events);
    }

    // The window goes away as if killed.
    void Die() {
        alive_ = false;
        if (page_) page_->Leave();
        Tell([](BrowserEvents& e) { e.OnQuit(); });
    }
    // Has shown this page for long.
    void Show(const std::string& address) { page_ = ScriptedPage::Load(web_, address); }
    // Shows another page when it is loaded.
    void Load(const std::string& address) {
        ++loading_;
        web_.clock.At(web_.clock.Elapsed() + web_.load_ms, [self = shared_from_this(), address] {
            --self->loading_;
            self->Show(address);
            self->Tell([=, found = self->page_ != nullptr](BrowserEvents& e) {
                found ? e.DocumentComplete(true) : e.NavigateError(address, "no page");
            });
        });
    }
    // Tells the subscribers in DoEvents.
    void Tell(const std::function<void(BrowserEvents&)>& event) {
        web_.events.emplace_back(
            [self = shared_from_this(), event] { self->subscribers.ForEach(event); });
    }
    const std::shared_ptr<ScriptedPage>& page() const { return page_; }

    Subscribers<BrowserEvents> subscribers;
    std::uint64_t handle = 1;
    int brought_to_front = 0;
    // Where the user's pointer is: the names of the frames and of the element.
    std::vector<std::string> pointer;

private:
    ScriptedWeb& web_;
    std::shared_ptr<ScriptedPage> page_;
    int loading_ = 0;
    bool alive_ = true;
};

inline std::shared_ptr<Browser> ScriptedWeb::Create(std::string& why) {
    why = refusal;
    if (!refusal.empty()) return nullptr;
    Note("create");
    return browser = std::make_shared<ScriptedBrowser>(*this);
}

// The windows that a user has open.
class ScriptedWindows : public BrowserWindows {
public:
    std::vector<std::shared_ptr<Browser>> visible;
    std::shared_ptr<Browser> focused;
    std::shared_ptr<Browser> opens;  // the window that Open answers
    std::string refusal;             // why none can be opened
    std::vector<std::string> opened;

    std::vector<std::shared_ptr<Browser>> Visible() override { return visible; }
    std::shared_ptr<Browser> Focused() override { return focused; }
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override {
        opened.push_back(address);
        why = refusal;
        return refusal.empty() ? opens : nullptr;
    }
};

// A person at work in a window of the scripted browser. What he does happens in DoEvents, one act
// behind the other. Elements are named by id or name, in the page or in a frame of it.
class ScriptedUser {
public:
    ScriptedUser(ScriptedWeb& web, std::shared_ptr<ScriptedBrowser> window)
        : web_(web), window_(std::move(window)) {}

    // Brings the focus to an element; "" to none, as a click beside everything does.
    void Focus(const std::string& name) {
        At(name, [](Node&) {});
    }
    void Type(const std::string& name, const std::string& text) {
        At(name, [=](Node& node) { node.value = text; });
    }
    // Clicks it: a link, or a submit button of a form with an action, leads there.
    void Click(const std::string& name) {
        At(name, [this](Node& node) {
            const std::string type = node.Attribute("type"), href = node.Attribute("href");
            if (type == "checkbox") node.checked = !node.checked;
            if (type == "radio") node.checked = true;
            Fire(*Active().page, &DocumentEvents::onclick);
            if (!href.empty() && href[0] != '#' && !href.starts_with("javascript:")) Leave(href);
            if (node.IsSubmit()) Submit(node.Form());
        });
    }
    // Presses Enter in the active field.
    void Enter() {
        web_.events.emplace_back([this] {
            const Spot field = Active();
            field.page->subscribers.ForEach([](DocumentEvents& e) { e.onkeypress(13); });
            // The browser itself clicks the submit button; the focus stays in the field.
            if (field.node->Form()) Fire(*field.page, &DocumentEvents::onclick);
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
        Node* frame = nullptr;  // that holds the page
    };
    static void Fire(ScriptedPage& page, void (DocumentEvents::*event)()) {
        page.subscribers.ForEach(std::mem_fn(event));
    }
    Spot Find(const std::string& name) const {
        const auto& page = window_->page();
        if (name.empty()) return {page, page->body};
        if (Node* node = page->Find(name)) return {page, node};
        for (Node* frame : page->root().Below("IFRAME")) {
            const auto inner = page->FramePage(*frame);
            if (Node* node = inner ? inner->Find(name) : nullptr) return {inner, node, frame};
        }
        throw std::logic_error("the page has no " + name);
    }
    Spot Active() const {
        const auto& page = window_->page();
        if (!page->active->IsFrame()) return {page, page->active};
        const auto inner = page->FramePage(*page->active);
        return {inner, inner->active, page->active};
    }
    // Brings the focus to an element, or to the one around it that takes it, and does `act` there.
    void At(const std::string& name, const std::function<void(Node&)>& act) {
        static const std::set<std::string> kFields{"INPUT", "BUTTON", "SELECT", "TEXTAREA"};
        Spot spot = Find(name);
        const auto takes_focus = [&](const Node& node) {
            return &node == spot.page->body || node.Has("tabindex") || node.Has("href") ||
                   kFields.contains(node.tag);
        };
        while (!takes_focus(*spot.node)) spot.node = spot.node->parent;
        web_.events.emplace_back([=, this] {
            Focus(spot);
            act(*spot.node);
        });
    }
    void Focus(const Spot& spot) {
        const Spot before = Active();
        if (before.node == spot.node) return;
        const bool leaves = before.node != before.page->body;
        if (leaves) Fire(*before.page, &DocumentEvents::onbeforedeactivate);
        before.page->active = before.page->body;
        const auto top = window_->page();
        if (spot.frame && top->active != spot.frame) {
            top->active = spot.frame;
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
