#include "explorer/page_double.h"

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

bool IsControl(const Node& node) {
    constexpr std::string_view kTags[] = {"INPUT", "SELECT", "BUTTON", "TEXTAREA"};
    return std::ranges::find(kTags, node.tag) != std::end(kTags);
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

// A member that is read, or called with arguments.
struct Call {
    PageDouble& page;
    Node& e;  // the node, or the first one of a list
    const Nodes& nodes;
    const int number;
    const EventArguments& a;
    const std::string text = a.At(0).Text().value_or("");

    Variant Found(const Nodes& found) const {
        return page.Give(found.empty() ? nullptr : found.front());
    }
    Variant List(const Nodes& list) const { return page.Make("list", list); }
    Variant At(double x, double y) const {
        Nodes hit;
        for (Node* node : e.Below("*")) {
            const auto [left, top, right, bottom] = BoxOfNode(*node);
            if (x >= left && x < right && y >= top && y < bottom) hit = {node};
        }
        return Found(hit);
    }
    Variant Item() const {
        if (const auto index = a.At(0).Number())
            return page.Give(nodes.at(static_cast<std::size_t>(*index)));
        Nodes named = nodes;
        std::erase_if(named, [this](const Node* node) {
            return node->Attribute("id") != text && node->Attribute("name") != text;
        });
        return named.size() > 1 ? List(named) : Found(named);
    }
    Variant Controls() const {
        Nodes controls = e.Below("*");
        std::erase_if(controls, [](const Node* node) { return !IsControl(*node); });
        return List(controls);
    }
    Variant Attribute() const {
        // Old documents answer the property of that name, if not asked for what is written.
        if (page.mode < 8 && a.At(1).Number() != 2) return Variant("its property");
        return e.Has(text) ? Variant(e.Attribute(text)) : Variant(static_cast<IDispatch*>(nullptr));
    }
    Variant Contains() const {
        const auto is = [this](const auto& known) {
            return known.second == a.At(0).Object().get();
        };
        const Node* node = std::ranges::find_if(page.objects, is)->first;
        while (node && node != &e) node = node->parent;
        return Variant(node == &e);
    }
    Variant Act() const {
        if (TypeOf(e) == "checkbox" && !e.Has("disabled")) e.checked = !e.checked;
        if (TypeOf(e) == "radio") e.checked = true;
        return Variant(e.Has("disabled") || page.Fire(&e, "onclick"));
    }
};

Nodes Frames(const PageDouble& page) {
    Nodes frames = page.root->Below("*");
    std::erase_if(frames, [](const Node* node) { return !node->IsFrame(); });
    return frames;
}

int Size(const Nodes& nodes) { return static_cast<int>(nodes.size()); }

struct Member {
    const char* name;
    std::string kinds;  // of the objects that have it; "*" for all elements
    Variant (*read)(Call&);
    int from = 0, to = 11;  // the document modes that have it
};

// Everything that the objects of a page have.
const Member kMembers[] = {
    {"URL", "document", [](Call& c) { return Variant(c.page.url); }},
    {"documentMode", "document", [](Call& c) { return Variant(c.page.mode); }},
    {"readyState", "document", [](Call& c) { return Variant(c.page.ready_state); }},
    {"hasFocus", "document", [](Call& c) { return Variant(c.page.focused); }},
    {"documentElement", "document", [](Call& c) { return c.Found(c.e.Below("HTML")); }},
    {"activeElement", "document", [](Call& c) { return c.page.Give(c.page.active); }},
    {"location", "document", [](Call& c) { return c.page.Make("location"); }},
    {"href", "location", [](Call& c) { return Variant(c.page.url); }},
    {"forms", "document", [](Call& c) { return c.List(c.e.Below("FORM")); }},
    {"links", "document", [](Call& c) { return c.List(c.e.Below("A")); }},
    {"getElementById", "document", [](Call& c) { return c.Found(c.page.With("id", c.text)); }},
    {"getElementsByName", "document", [](Call& c) { return c.List(c.page.With("name", c.text)); }},
    {"elementFromPoint", "document",
     [](Call& c) { return c.At(*c.a.At(0).Number(), *c.a.At(1).Number()); }},
    {"defaultView", "document", [](Call& c) { return c.page.Make("window"); }, 9},
    {"parentWindow", "document", [](Call& c) { return c.page.Make("window"); }, 0, 9},
    {"createEvent", "document", [](Call& c) { return c.page.Make("event"); }, 9},
    {"initEvent", "event", [](Call& c) { return Variant(c.page.event_type = "on" + c.text); }},
    {"keyCode", "event", [](Call& c) { return Variant(c.number); }},
    {"getElementsByTagName", "document *", [](Call& c) { return c.List(c.e.Below(c.text)); }},
    {"length", "list", [](Call& c) { return Variant(Size(c.nodes)); }},
    {"item", "list", [](Call& c) { return c.Item(); }},
    {"length", "window", [](Call& c) { return Variant(Size(Frames(c.page))); }},
    {"item", "window",
     [](Call& c) {
         const auto at = static_cast<std::size_t>(*c.a.At(0).Number());
         return c.page.frames.at(Frames(c.page).at(at))->Make("window");
     }},
    {"document", "window",
     [](Call& c) {
         const bool denied = c.page.url.starts_with("http://other/");
         return denied ? Variant::Failure(E_ACCESSDENIED) : c.page.Give(c.page.root.get());
     }},
    {"screen", "window",
     [](Call& c) { return c.page.screen_dpi ? c.page.Make("screen") : c.page.Give(nullptr); }},
    {"close", "window", [](Call& c) { return Variant(c.page.went_to = "closed"); }},
    {"deviceXDPI", "screen", [](Call& c) { return Variant(c.page.screen_dpi); }},
    {"logicalXDPI", "screen", [](Call&) { return Variant(96); }},
    {"tagName", "*", [](Call& c) { return Variant(c.e.tag); }},
    {"id", "*", [](Call& c) { return Variant(c.e.Attribute("id")); }},
    {"innerText", "*", [](Call& c) { return Variant(c.e.InnerText()); }},
    {"getAttribute", "*", [](Call& c) { return c.Attribute(); }},
    {"getAttributeNode", "*",
     [](Call& c) { return c.page.Make("attribute", {}, c.e.Has(c.text)); }},
    {"specified", "attribute", [](Call& c) { return Variant(c.number == 1); }},
    {"contains", "HTML", [](Call& c) { return c.Contains(); }},
    {"isContentEditable", "*", [](Call& c) { return Variant(c.e.Has("contenteditable")); }},
    {"scrollIntoView", "*", [](Call& c) { return Variant(c.page.said += "scrolled "); }},
    {"click", "*", [](Call& c) { return c.Act(); }},
    {"fireEvent", "*", [](Call& c) { return Variant(c.page.Fire(&c.e, c.text)); }, 0, 9},
    {"dispatchEvent", "*", [](Call& c) { return Variant(c.page.Fire(&c.e, c.page.event_type)); },
     9},
    {"clientLeft", "*", [](Call&) { return Variant(2); }},
    {"clientTop", "*", [](Call&) { return Variant(3); }},
    {"parentElement", "*",
     [](Call& c) { return c.page.Give(c.e.tag == "HTML" ? nullptr : c.e.parent); }},
    {"sourceIndex", "*",
     [](Call& c) {
         const Nodes all = c.page.root->Below("*");
         return Variant(static_cast<int>(std::ranges::find(all, &c.e) - all.begin()));
     }},
    {"getBoundingClientRect", "*", [](Call& c) { return c.page.Make("rectangle", {&c.e}); }},
    {"left", "rectangle", [](Call& c) { return Variant(BoxOfNode(c.e)[0]); }},
    {"top", "rectangle", [](Call& c) { return Variant(std::to_string(BoxOfNode(c.e)[1]) + ".4"); }},
    {"right", "rectangle", [](Call& c) { return Variant(BoxOfNode(c.e)[2]); }},
    {"bottom", "rectangle", [](Call& c) { return Variant(BoxOfNode(c.e)[3]); }},
    {"contentWindow", "IFRAME FRAME",
     [](Call& c) { return c.page.frames.at(&c.e)->Make("window"); }},
    {"src", "IFRAME FRAME INPUT", [](Call& c) { return Variant(c.e.Attribute("src")); }},
    {"href", "A", [](Call& c) { return Variant("http://site/" + c.e.Attribute("href")); }},
    {"elements", "FORM", [](Call& c) { return c.Controls(); }},
    {"name", "FORM A IFRAME FRAME INPUT SELECT BUTTON TEXTAREA",
     [](Call& c) { return Variant(c.e.Attribute("name")); }},
    {"type", "INPUT SELECT BUTTON TEXTAREA", [](Call& c) { return Variant(TypeOf(c.e)); }},
    {"disabled", "INPUT", [](Call& c) { return Variant(c.e.Has("disabled")); }},
    {"form", "INPUT SELECT BUTTON TEXTAREA", [](Call& c) { return c.page.Give(c.e.Form()); }},
    {"checked", "INPUT", [](Call& c) { return Variant(c.e.checked); }},
    {"value", "INPUT TEXTAREA BUTTON", [](Call& c) { return Variant(c.e.value); }},
    {"value", "SELECT",
     [](Call& c) { return Variant(c.e.Below("OPTION").at(c.e.selected)->InnerText()); }},
    {"value", "OPTION", [](Call& c) { return Variant(c.e.InnerText()); }},
    {"text", "OPTION", [](Call& c) { return Variant(c.e.InnerText()); }},
    {"options", "SELECT", [](Call& c) { return c.List(c.e.Below("OPTION")); }},
    {"selectedIndex", "SELECT", [](Call& c) { return Variant(c.e.selected); }},
};

bool Write(Call& c, const std::string& name) {
    if (name == "href") return c.page.went_to = c.text, true;
    if (name == "selectedIndex") return c.e.selected = std::stoi(c.text), true;
    if (name == "checked") return c.e.checked = c.text == "True", true;
    if (name == "innerText") return c.e.children.front()->text = c.text, true;
    // A field drops what its type does not allow; newer documents keep LF alone.
    const bool dropped = TypeOf(c.e) == "number" && c.text == "x";
    c.e.value = dropped ? "" : c.text;
    if (c.page.mode >= 9) std::erase(c.e.value, '\r');
    return name == "value";
}

const IID& EventsOf(const std::string& kind) {
    if (kind == "document") return __uuidof(HTMLDocumentEvents2);
    return kind == "FORM" ? __uuidof(HTMLFormElementEvents2) : GUID_NULL;
}

// An object of a page, as the browser gives it. Its members have numbers by their names, the same
// for all objects; forms and documents also know theirs by those of mshtmdid.h.
class PageObject : public ObjectDouble {
public:
    PageObject(PageDouble& page, std::string kind, Nodes nodes, int number)
        : ObjectDouble(page.world.faults, EventsOf(kind)),
          page_(page),
          kind_(std::move(kind)),
          nodes_(std::move(nodes)),
          number_(number) {}
    ~PageObject() override {
        if (IsElement() || kind_ == "document") page_.objects.erase(nodes_.front());
    }

private:
    bool IsElement() const { return std::isupper(kind_[0]); }
    bool Has(const Member& member) const {
        const bool any = IsElement() && member.kinds.find('*') != std::string::npos;
        return page_.mode >= member.from && page_.mode <= member.to &&
               (any || (" " + member.kinds + " ").find(" " + kind_ + " ") != std::string::npos);
    }
    DISPID Number(const std::string& name) const override {
        const auto* const at = std::ranges::find(kMembers, name, &Member::name);
        return at == std::end(kMembers)
                   ? DISPID_UNKNOWN
                   : page_.world.first_number + static_cast<DISPID>(at - kMembers);
    }
    Variant Do(DISPID number, WORD flags, const EventArguments& arguments) override {
        const DISPID index = number - page_.world.first_number;
        const bool named = index >= 0 && index < static_cast<DISPID>(std::size(kMembers));
        const std::string name = named ? kMembers[index].name : "";
        const auto* const member = std::ranges::find_if(kMembers, [&](const Member& known) {
            return Has(known) &&
                   (name == known.name || number == HideableMember(kind_, known.name));
        });
        if (member == std::end(kMembers)) return Variant::Failure(DISP_E_MEMBERNOTFOUND);
        Call call{page_, nodes_.empty() ? *page_.root : *nodes_.front(), nodes_, number_,
                  arguments};
        if (flags == DISPATCH_PROPERTYPUT)
            return Write(call, member->name) ? Variant() : Variant::Failure(DISP_E_MEMBERNOTFOUND);
        Node* const hiding = Hiding(name);
        return hiding ? page_.Give(hiding) : member->read(call);
    }
    // The image or control whose name hides a member of the document or a form; null for none.
    Node* Hiding(const std::string& name) const {
        if (kind_ != "document" && kind_ != "FORM") return nullptr;
        for (Node* node : page_.With("name", name)) {
            if (node->Form() == (kind_ == "FORM" ? nodes_.front() : nullptr)) return node;
        }
        return nullptr;
    }
    ObjectDouble* Server() override { return page_.world.browser; }

    PageDouble& page_;
    const std::string kind_;
    const Nodes nodes_;
    const int number_;
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
        SetFrame(*node, node->Attribute("srcdoc"), node->Attribute("src"));
}

void PageDouble::SetFrame(Node& frame, std::string_view html, const std::string& its_url) {
    frames[&frame] = &world.Open(html, mode, its_url);
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

Variant PageDouble::Make(const std::string& kind, Nodes nodes, int number) {
    return Variant(new PageObject(*this, kind, std::move(nodes), number));
}

bool PageDouble::Fire(Node* node, const std::string& event, int key) {
    for (Node* at = node; at; at = at->parent) {
        const std::string word = at->Attribute(event);
        if (at->Has(event)) said += (word != "ask" ? word : world.box() ? "yes" : "no") + " ";
    }
    const auto source = objects.find(event == "onsubmit" ? node : root.get());
    const auto number = kEvents.find(event);
    if (source == objects.end() || number == kEvents.end()) return true;
    const Variant told = Make("event", {}, key);
    return source->second->Fire(number->second, {told.get()});
}

void PageDouble::Focus(Node& node) {
    if (active->tag != "BODY") Fire(active, "onbeforedeactivate");
    active = &node;
    Fire(&node, "onfocusin");
}

}  // namespace tamrin::test
