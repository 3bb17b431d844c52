#include "explorer/explorer_rig.h"

#include <set>

namespace tamrin::test {
namespace {

// The numbers of the events that a program can hear (mshtmdid.h).
const std::map<std::string, DISPID> kEvents = {{"onclick", -600},
                                               {"onkeypress", -603},
                                               {"onsubmit", 1007},
                                               {"onbeforedeactivate", 1034},
                                               {"onfocusin", 1048}};

using Nodes = std::vector<Node*>;

bool IsControl(const Node& node) {
    static const std::set<std::string> kControls{"INPUT", "SELECT", "BUTTON", "TEXTAREA"};
    return kControls.contains(node.tag);
}

// An object of a page: its document, its window with the frames in it, a list of nodes, an element,
// whose kind is its tag, or a small one that belongs to these.
class PageObject : public ObjectDouble {
public:
    PageObject(PageDouble& page, const std::string& its_kind, Nodes nodes)
        : ObjectDouble(page.world, its_kind),
          page_(page),
          nodes_(std::move(nodes)),
          e_(nodes_.empty() ? *page.root : *nodes_.front()) {}
    ~PageObject() override {
        std::erase_if(page_.objects, [this](const auto& known) { return known.second == this; });
    }

private:
    Variant Do(const std::string& name, bool by_name, WORD flags,
               const EventArguments& a) override {
        const std::string text = a.At(0).Text().value_or("");
        if (flags == DISPATCH_PROPERTYPUT) return Put(name, text) ? Variant() : Unknown();
        if (Node* const hiding = by_name ? Hiding(name) : nullptr) return page_.Give(hiding);
        if (name == "getElementsByTagName") return List(e_.Below(text));
        return kind == e_.tag ? OfElement(name, a, text) : OfOther(name, a, text);
    }
    // The image or control whose name hides a member of the document or a form; null for none.
    Node* Hiding(const std::string& name) const {
        if (kind != "document" && kind != "FORM") return nullptr;
        for (Node* node : page_.With("name", name)) {
            if (node->Form() == (kind == "FORM" ? &e_ : nullptr)) return node;
        }
        return nullptr;
    }

    Variant Make(const std::string& its_kind, const Nodes& nodes = {}) const {
        return Variant(new PageObject(page_, its_kind, nodes));
    }
    Variant List(const Nodes& list) const { return Make("list", list); }
    Variant First(const Nodes& all) const { return page_.Give(all.empty() ? nullptr : all[0]); }
    static Variant WindowOf(PageDouble& page) {
        return Variant(new PageObject(page, "window", page.Where(&Node::IsFrame)));
    }

    // A member of the document or a small object.
    Variant OfOther(const std::string& name, const EventArguments& a, const std::string& text) {
        const bool newer = world.mode >= 9, denied = page_.url.starts_with("http://other/");
        if (name == "URL") return Variant(page_.url);
        if (name == "documentMode") return Variant(world.mode);
        if (name == "readyState") return Variant(page_.ready_state);
        if (name == "hasFocus") return Variant(page_.focused);
        if (name == "documentElement") return First(e_.Below("HTML"));
        if (name == "activeElement") return page_.Give(page_.active);
        if (name == "location") return Make("location");
        if (name == "forms") return List(e_.Below("FORM"));
        if (name == "links") return List(e_.Below("A"));
        if (name == "getElementById") return First(page_.With("id", text));
        if (name == "getElementsByName") return List(page_.With("name", text));
        if (name == "elementFromPoint") return First(page_.With("at", text + *a.At(1).Text()));
        if (name == (newer ? "defaultView" : "parentWindow")) return WindowOf(page_);
        if (name == "createEvent" && newer) return Make("event");
        if (name == "document" && !denied) return page_.Give(page_.root.get());
        if (name == "screen") return Make("screen");
        if (name == "deviceXDPI") return Variant(144);
        if (name == "logicalXDPI") return Variant(96);
        if (name == "keyCode") return Variant(page_.key);
        if (name == "initEvent") return Variant(page_.event = "on" + text);
        if (name == "specified") return Variant(e_.Has(kind));
        if (name == "length") return Variant(static_cast<int>(nodes_.size()));
        if (name == "item" && a.At(0).Number()) {
            Node* const node = nodes_.at(static_cast<std::size_t>(*a.At(0).Number()));
            return kind == "window" ? WindowOf(*page_.frames.at(node)) : page_.Give(node);
        }
        if (name == "item") {
            Nodes named = nodes_;
            std::erase_if(named, [&](const Node* node) {
                return node->Attribute("id") != text && node->Attribute("name") != text;
            });
            return named.size() > 1 ? List(named) : First(named);
        }
        return kind == "rectangle" ? Variant(e_.Attribute(name)) : Unknown();
    }

    Variant OfElement(const std::string& name, const EventArguments& a, const std::string& text) {
        const bool newer = world.mode >= 9, control = IsControl(e_), select = kind == "SELECT";
        const std::string type = e_.Attribute("type");
        if (name == "tagName") return Variant(kind);
        if (name == "id" || name == "src") return Variant(e_.Attribute(name));
        if (name == "innerText" || name == "text") return Variant(e_.InnerText());
        if (name == "parentElement") return page_.Give(kind == "HTML" ? nullptr : e_.parent);
        // Old documents answer the property of that name, if not asked for what is written.
        const bool written = newer || a.At(1).Number() == 2;
        if (name == "getAttribute" && !written) return Variant("its property");
        if (name == "getAttribute")
            return e_.Has(text) ? Variant(e_.Attribute(text)) : page_.Give(nullptr);
        if (name == "getAttributeNode") return Make(text, {&e_});
        if (name == "contains") {
            const Node* node = &static_cast<PageObject*>(a.At(0).Object().get())->e_;
            while (node && node != &e_) node = node->parent;
            return Variant(node == &e_);
        }
        if (name == "isContentEditable") return Variant(e_.Has("contenteditable"));
        if (name == "click") {
            if (type == "checkbox" && !e_.Has("disabled")) e_.checked = !e_.checked;
            if (type == "radio") e_.checked = true;
            return Variant(page_.Fire(&e_, "onclick"));
        }
        if (name == "fireEvent" && !newer) return Variant(page_.Fire(&e_, text));
        if (name == "dispatchEvent" && newer) return Variant(page_.Fire(&e_, page_.event));
        if (name == "clientLeft" || name == "clientTop") return Variant(2);
        if (name == "sourceIndex") {
            const Nodes all = page_.root->Below("*");
            return Variant(static_cast<int>(std::ranges::find(all, &e_) - all.begin()));
        }
        if (name == "getBoundingClientRect") return Make("rectangle", {&e_});
        if (name == "contentWindow" && e_.IsFrame()) return WindowOf(*page_.frames.at(&e_));
        if (name == "href" && kind == "A") return Variant("http://site/" + e_.Attribute("href"));
        if (name == "elements" && kind == "FORM")
            return List(page_.Where([this](Node& n) { return IsControl(n) && n.Form() == &e_; }));
        if (name == "name" && (control || e_.IsFrame() || kind == "FORM"))
            return Variant(e_.Attribute("name"));
        const Nodes options = e_.Below("OPTION");
        if (select && name == "selectedIndex") return Variant(e_.selected);
        if (select && name == "options") return List(options);
        if (select && name == "value") return Variant(options.at(e_.selected)->InnerText());
        if (name == "value" && kind == "OPTION") return Variant(e_.InnerText());
        if (control && name == "disabled") return Variant(e_.Has("disabled"));
        if (control && name == "checked") return Variant(e_.checked);
        if (control && name == "type")
            return Variant(e_.Has("type") ? type : e_.IsSubmit() ? "submit" : "text");
        if (control && name == "form") return page_.Give(e_.Form());
        return control && name == "value" ? Variant(e_.value) : Unknown();
    }
    bool Put(const std::string& name, const std::string& text) const {
        if (name == "href") return page_.went_to = text, true;
        if (name == "selectedIndex") return e_.selected = std::stoi(text), true;
        if (name == "checked") return e_.checked = text == "True", true;
        if (name == "innerText") return e_.children.front()->text = text, true;
        // A field drops what its type does not allow.
        e_.value = e_.Attribute("type") == "number" && text == "x" ? "" : text;
        return name == "value";
    }

    PageDouble& page_;
    const Nodes nodes_;
    Node& e_;  // the node, or the first one of a list
};

}  // namespace

PageDouble& PageWorld::Open(std::string_view html, const std::string& url) {
    auto root = ParseHtml("<html><body>" + std::string(html));
    PageDouble& page =
        *pages.emplace_back(std::make_unique<PageDouble>(*this, url, std::move(root)));
    for (Node* frame : page.Where(&Node::IsFrame))
        page.frames[frame] = &Open(frame->Attribute("srcdoc"), frame->Attribute("src"));
    return page;
}

Nodes PageDouble::Where(const std::function<bool(Node&)>& wanted) const {
    Nodes nodes = root->Below("*");
    std::erase_if(nodes, [&](Node* node) { return !wanted(*node); });
    return nodes;
}

Variant PageDouble::Give(Node* node) {
    if (!node) return Variant(static_cast<IDispatch*>(nullptr));
    auto*& object = objects[node];
    if (!object)
        object = new PageObject(*this, node == root.get() ? "document" : node->tag, {node});
    return Variant(object);
}

bool PageDouble::Fire(Node* node, const std::string& its_event, int its_key) {
    for (Node* at = node; at; at = at->parent) {
        const std::string word = at->Attribute(its_event);
        if (at->Has(its_event)) said += (word != "ask" ? word : world.box() ? "yes" : "no") + " ";
    }
    const auto source = objects.find(its_event == "onsubmit" ? node : root.get());
    const auto number = kEvents.find(its_event);
    if (source == objects.end() || number == kEvents.end()) return true;
    key = its_key;
    const Variant told(new PageObject(*this, "event", {}));
    return source->second->Fire(number->second, {told.get()});
}

}  // namespace tamrin::test
