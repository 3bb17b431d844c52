#include "explorer/browser_double.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "platform/explorer/member_numbers.h"

namespace tamrin::test {
namespace {

// The numbers of the events that a program can hear (mshtmdid.h).
const std::map<std::string, DISPID> kEvents = {{"onclick", -600},
                                               {"onkeypress", -603},
                                               {"onsubmit", 1007},
                                               {"onbeforedeactivate", 1034},
                                               {"onfocusin", 1048}};

using Nodes = std::vector<Node*>;

bool IsOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
    return std::ranges::find(words, word) != words.end();
}

bool IsControl(const Node* node) {
    return IsOneOf(node->tag, {"INPUT", "SELECT", "BUTTON", "TEXTAREA"});
}

std::string TypeOf(const Node& node) {
    if (node.tag == "SELECT") return "select-one";
    if (node.tag == "TEXTAREA") return "textarea";
    return node.Has("type") ? node.Attribute("type") : node.tag == "BUTTON" ? "submit" : "text";
}

std::array<int, 4> BoxOfNode(const Node& node) {
    std::array<int, 4> box{};
    std::istringstream numbers(node.Attribute("data-box"));
    for (int& number : box) numbers >> number;
    return box;
}

Nodes Frames(const PageDouble& page) {
    Nodes frames = page.root->Below("*");
    std::erase_if(frames, [](const Node* node) { return !node->IsFrame(); });
    return frames;
}

// A document, a window, a list of nodes, a location, or an element, whose kind is its tag.
class PageObject : public ObjectDouble {
public:
    PageObject(PageDouble& page, std::string kind, Nodes nodes)
        : ObjectDouble(page.world.faults, kind == "document" ? __uuidof(HTMLDocumentEvents2)
                                                             : __uuidof(HTMLFormElementEvents2)),
          page_(page),
          kind_(std::move(kind)),
          nodes_(std::move(nodes)),
          e_(nodes_.empty() ? *page.root : *nodes_.front()) {}
    ~PageObject() override {
        std::erase_if(page_.objects, [this](const auto& known) { return known.second == this; });
    }

private:
    // Members have numbers by their names, the same for all objects; forms and documents also know
    // theirs by those of mshtmdid.h.
    DISPID Number(const std::string& name) const override {
        auto& names = page_.world.names;
        const auto index = std::ranges::find(names, name) - names.begin();
        if (index == std::ssize(names)) names.push_back(name);
        return page_.world.first_number + static_cast<DISPID>(index);
    }
    Variant Do(DISPID number, WORD flags, const EventArguments& arguments) override {
        const auto& names = page_.world.names;
        const DISPID first = page_.world.first_number;
        const auto name = std::ranges::find_if(names, [&](const std::string& known) {
            return number == first + (&known - names.data()) ||
                   number == HideableMember(kind_, known);
        });
        if (name == names.end()) return Unknown();
        const std::string text = arguments.At(0).Text().value_or("");
        if (flags == DISPATCH_PROPERTYPUT) return Put(*name, text) ? Variant() : Unknown();
        if (Node* const hiding = number >= first ? Hiding(*name) : nullptr)
            return page_.Give(hiding);
        if (kind_ == "document") return OfDocument(*name, arguments, text);
        if (kind_ == "window") return OfWindow(*name, arguments);
        return kind_ == "list" ? OfList(*name, arguments, text) : OfElement(*name, arguments, text);
    }
    // The image or control whose name hides a member of the document or a form; null for none.
    Node* Hiding(const std::string& name) const {
        if (kind_ != "document" && kind_ != "FORM") return nullptr;
        for (Node* node : page_.With("name", name)) {
            if (node->Form() == (kind_ == "FORM" ? &e_ : nullptr)) return node;
        }
        return nullptr;
    }
    ObjectDouble* Server() override { return page_.world.browser; }

    static Variant Unknown() { return Variant::Failure(DISP_E_MEMBERNOTFOUND); }
    Variant First(const Nodes& found) const {
        return page_.Give(found.empty() ? nullptr : found.front());
    }
    Variant List(const Nodes& list) const { return page_.Make("list", list); }
    Variant Bag(const BagDouble::Members& members) const {
        return Variant(new BagDouble(faults_, members));
    }

    Variant OfDocument(const std::string& name, const EventArguments& a, const std::string& text) {
        if (name == "URL") return Variant(page_.url);
        if (name == "documentMode") return Variant(page_.mode);
        if (name == "readyState") return Variant(page_.ready_state);
        if (name == "hasFocus") return Variant(page_.focused);
        if (name == "documentElement") return First(e_.Below("HTML"));
        if (name == "activeElement") return page_.Give(page_.active);
        if (name == "location") return page_.Make("location");
        if (name == "forms") return List(e_.Below("FORM"));
        if (name == "links") return List(e_.Below("A"));
        if (name == "getElementById") return First(page_.With("id", text));
        if (name == "getElementsByName") return List(page_.With("name", text));
        if (name == "getElementsByTagName") return List(e_.Below(text));
        if (name == "elementFromPoint") return At(*a.At(0).Number(), *a.At(1).Number());
        if (name == "defaultView" && page_.mode >= 9) return page_.Make("window");
        if (name == "parentWindow" && page_.mode <= 9) return page_.Make("window");
        if (name == "createEvent" && page_.mode >= 9) return Bag({{"initEvent", 0}});
        return Unknown();
    }
    Variant At(double x, double y) const {
        Nodes hit;
        for (Node* node : e_.Below("*")) {
            const auto [left, top, right, bottom] = BoxOfNode(*node);
            if (x >= left && x < right && y >= top && y < bottom) hit = {node};
        }
        return First(hit);
    }

    Variant OfWindow(const std::string& name, const EventArguments& a) const {
        const Nodes frames = Frames(page_);
        if (name == "length") return Variant(static_cast<int>(frames.size()));
        if (name == "item") {
            const auto index = static_cast<std::size_t>(*a.At(0).Number());
            return page_.frames.at(frames.at(index))->Make("window");
        }
        const bool denied = page_.url.starts_with("http://other/");
        if (name == "document" && !denied) return page_.Give(page_.root.get());
        if (name == "screen") return Bag({{"deviceXDPI", page_.screen_dpi}, {"logicalXDPI", 96}});
        if (name == "close") return Variant(page_.went_to = "closed");
        return Unknown();
    }

    Variant OfList(const std::string& name, const EventArguments& a, const std::string& text) {
        if (name == "length") return Variant(static_cast<int>(nodes_.size()));
        if (name != "item") return Unknown();
        if (const auto index = a.At(0).Number())
            return page_.Give(nodes_.at(static_cast<std::size_t>(*index)));
        Nodes named = nodes_;
        std::erase_if(named, [&](const Node* node) {
            return node->Attribute("id") != text && node->Attribute("name") != text;
        });
        return named.size() > 1 ? List(named) : First(named);
    }

    Variant OfElement(const std::string& name, const EventArguments& a, const std::string& text) {
        const bool control = IsControl(&e_);
        if (name == "tagName" && kind_ == e_.tag) return Variant(e_.tag);
        if (name == "id" || name == "src") return Variant(e_.Attribute(name));
        if (name == "innerText" || name == "text") return Variant(e_.InnerText());
        if (name == "value" && kind_ == "OPTION") return Variant(e_.InnerText());
        if (name == "parentElement") return page_.Give(e_.tag == "HTML" ? nullptr : e_.parent);
        if (name == "getElementsByTagName") return List(e_.Below(text));
        // Old documents answer the property of that name, if not asked for what is written.
        const bool written = page_.mode >= 8 || a.At(1).Number() == 2;
        if (name == "getAttribute" && !written) return Variant("its property");
        if (name == "getAttribute")
            return e_.Has(text) ? Variant(e_.Attribute(text)) : page_.Give(nullptr);
        if (name == "getAttributeNode") return Bag({{"specified", e_.Has(text)}});
        if (name == "contains") return Contains(*a.At(0).Object().get());
        if (name == "isContentEditable") return Variant(e_.Has("contenteditable"));
        if (name == "scrollIntoView") return Variant(page_.said += "scrolled ");
        if (name == "click") return Click();
        if (name == "fireEvent" && page_.mode <= 9) return Variant(page_.Fire(&e_, text));
        if (name == "dispatchEvent" && page_.mode >= 9) {
            auto* const event = static_cast<BagDouble*>(a.At(0).Object().get());
            return Variant(page_.Fire(&e_, "on" + event->is["initEvent"].Text().value_or("")));
        }
        if (name == "clientLeft") return Variant(2);
        if (name == "clientTop") return Variant(3);
        if (name == "sourceIndex") {
            const Nodes all = page_.root->Below("*");
            return Variant(static_cast<int>(std::ranges::find(all, &e_) - all.begin()));
        }
        if (name == "getBoundingClientRect") {
            const auto [left, top, right, bottom] = BoxOfNode(e_);
            return Bag({{"left", left}, {"top", top}, {"right", right}, {"bottom", bottom}});
        }
        if (name == "contentWindow" && e_.IsFrame()) return page_.frames.at(&e_)->Make("window");
        if (name == "href" && kind_ == "A") return Variant("http://site/" + e_.Attribute("href"));
        if (name == "elements" && kind_ == "FORM") {
            Nodes controls = e_.Below("*");
            std::erase_if(controls, std::not_fn(IsControl));
            return List(controls);
        }
        if (name == "name" && (control || IsOneOf(kind_, {"FORM", "A", "IFRAME", "FRAME"})))
            return Variant(e_.Attribute("name"));
        if (name == "value" && kind_ == "SELECT")
            return Variant(e_.Below("OPTION").at(e_.selected)->InnerText());
        if (name == "selectedIndex" && kind_ == "SELECT") return Variant(e_.selected);
        if (name == "options" && kind_ == "SELECT") return List(e_.Below("OPTION"));
        if (name == "disabled" && control) return Variant(e_.Has("disabled"));
        if (name == "checked" && control) return Variant(e_.checked);
        if (name == "type" && control) return Variant(TypeOf(e_));
        if (name == "form" && control) return page_.Give(e_.Form());
        return name == "value" && control ? Variant(e_.value) : Unknown();
    }
    Variant Contains(const IDispatch& object) const {
        const auto is = [&object](const auto& known) { return known.second == &object; };
        const Node* node = std::ranges::find_if(page_.objects, is)->first;
        while (node && node != &e_) node = node->parent;
        return Variant(node == &e_);
    }
    Variant Click() const {
        if (TypeOf(e_) == "checkbox" && !e_.Has("disabled")) e_.checked = !e_.checked;
        if (TypeOf(e_) == "radio") e_.checked = true;
        return Variant(e_.Has("disabled") || page_.Fire(&e_, "onclick"));
    }
    bool Put(const std::string& name, const std::string& text) const {
        if (name == "href") return page_.went_to = text, true;
        if (name == "selectedIndex") return e_.selected = std::stoi(text), true;
        if (name == "checked") return e_.checked = text == "True", true;
        if (name == "innerText") return e_.children.front()->text = text, true;
        // A field drops what its type does not allow; newer documents keep LF alone.
        e_.value = TypeOf(e_) == "number" && text == "x" ? "" : text;
        if (page_.mode >= 9) std::erase(e_.value, '\r');
        return name == "value";
    }

    PageDouble& page_;
    const std::string kind_;
    const Nodes nodes_;
    Node& e_;  // the node, or the first one of a list
};

}  // namespace

PageDouble& PageWorld::Open(std::string_view html, int mode, const std::string& url) {
    return *pages.emplace_back(std::make_unique<PageDouble>(*this, html, mode, url));
}

PageDouble::PageDouble(PageWorld& its_world, std::string_view html, int its_mode,
                       std::string its_url)
    : world(its_world),
      url(std::move(its_url)),
      mode(its_mode),
      root(ParseHtml("<html><body>" + std::string(html))) {
    active = root->Below("BODY").at(0);
    for (Node* node : Frames(*this))
        frames[node] = &world.Open(node->Attribute("srcdoc"), mode, node->Attribute("src"));
}

Nodes PageDouble::With(const std::string& attribute, std::string_view value) {
    Nodes nodes = root->Below("*");
    std::erase_if(nodes, [&](const Node* node) {
        return !node->Has(attribute) || node->Attribute(attribute) != value;
    });
    return nodes;
}

Variant PageDouble::Give(Node* node) {
    Variant none(static_cast<IDispatch*>(nullptr));
    // An old document answers no object as an object without an address.
    if (!node && mode < 9) none.Out()->vt = VT_DISPATCH;
    if (!node) return none;
    if (const auto known = objects.find(node); known != objects.end())
        return Variant(known->second);
    Variant made = Make(node == root.get() ? "document" : node->tag, {node});
    objects[node] = static_cast<PageObject*>(made.get().pdispVal);
    return made;
}

Variant PageDouble::Make(const std::string& kind, Nodes nodes) {
    return Variant(new PageObject(*this, kind, std::move(nodes)));
}

bool PageDouble::Fire(Node* node, const std::string& event, int key) {
    for (Node* at = node; at; at = at->parent) {
        const std::string word = at->Attribute(event);
        if (at->Has(event)) said += (word != "ask" ? word : world.box() ? "yes" : "no") + " ";
    }
    const auto source = objects.find(event == "onsubmit" ? node : root.get());
    const auto number = kEvents.find(event);
    if (source == objects.end() || number == kEvents.end()) return true;
    const Variant told(new BagDouble(world.faults, {{"keyCode", key}}));
    return source->second->Fire(number->second, {told.get()});
}

void PageDouble::Focus(Node& node) {
    if (active->tag != "BODY") Fire(active, "onbeforedeactivate");
    active = &node;
    Fire(&node, "onfocusin");
}

}  // namespace tamrin::test
