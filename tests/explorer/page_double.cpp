#include "explorer/page_double.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

#include "platform/text.h"

namespace tamrin::test {
namespace {

// The numbers of the events that a program can hear (mshtmdid.h).
const std::map<std::string, DISPID> kEvents = {{"onclick", -600},
                                               {"onkeypress", -603},
                                               {"onsubmit", 1007},
                                               {"onbeforedeactivate", 1034},
                                               {"onfocusin", 1048}};

bool IsOneOf(const std::string& word, const std::set<std::string>& words) {
    return words.contains(word);
}
bool IsControl(const Node& node) {
    return IsOneOf(node.tag, {"INPUT", "SELECT", "TEXTAREA", "BUTTON", "FIELDSET"});
}
bool HasName(const Node& node) {
    return IsControl(node) || node.IsFrame() || IsOneOf(node.tag, {"FORM", "A", "IMG", "MAP"});
}
bool IsLink(const Node& node) { return IsOneOf(node.tag, {"A", "AREA"}) && node.Has("href"); }

std::string TypeOf(const Node& node) {
    if (node.tag == "SELECT") return node.Has("multiple") ? "select-multiple" : "select-one";
    if (node.tag == "TEXTAREA") return "textarea";
    const std::string type = LowerCase(node.Attribute("type"));
    if (node.tag == "BUTTON") return type.empty() ? "submit" : type;
    const bool known =
        IsOneOf(type, {"password", "email", "number", "date", "color", "range", "hidden", "file",
                       "checkbox", "radio", "submit", "reset", "button", "image"});
    return known ? type : "text";
}

// Text as it is seen: blanks count once.
std::string Seen(const std::string& text) {
    std::istringstream words(text);
    std::string seen;
    for (std::string word; words >> word;) seen += (seen.empty() ? "" : " ") + word;
    return seen;
}

std::string OptionValue(const Node& option) {
    return option.Has("value") ? option.Attribute("value") : Seen(option.InnerText());
}

// Where the origin of an address ends: at the path.
std::string OriginOf(const std::string& url) { return url.substr(0, url.find('/', 8)); }

std::string Escaped(const std::string& text, bool all) {
    std::ostringstream escaped;
    for (const unsigned char c : text) {
        const bool kept = all ? std::isalnum(c) != 0 : c < 0x80;
        if (kept) {
            escaped << c;
        } else {
            escaped << '%' << std::hex << std::uppercase << static_cast<int>(c);
        }
    }
    return escaped.str();
}

Variant Missing() { return Variant::Failure(DISP_E_MEMBERNOTFOUND); }

// The place of a node in the page: left, top, right and bottom stand in data-box.
std::array<double, 4> BoxOfNode(const Node& node) {
    std::array<double, 4> box{};
    std::istringstream numbers(node.Attribute("data-box"));
    for (double& number : box) numbers >> number;
    return box;
}

void ReadNode(Node& node) {
    std::map<std::string, std::string> attributes;
    for (const auto& [name, value] : node.attributes) attributes[LowerCase(name)] = value;
    node.attributes = std::move(attributes);
    const bool toggles = node.tag == "INPUT" && IsOneOf(TypeOf(node), {"checkbox", "radio"});
    if (toggles && !node.Has("value")) node.value = "on";
    const auto options = node.tag == "SELECT" ? node.Below("OPTION") : std::vector<Node*>();
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (options[i]->Has("selected")) node.selected = static_cast<int>(i);
    }
    for (const auto& child : node.children) ReadNode(*child);
}

}  // namespace

PageDouble& PageWorld::Open(std::string_view html, int mode, const std::string& url) {
    return *pages_.emplace_back(std::make_unique<PageDouble>(*this, html, mode, url));
}

bool PageWorld::IsReleased() const {
    return PageObject::alive == 0 &&
           std::ranges::all_of(pages_, [](const auto& page) { return page->IsReleased(); });
}

PageDouble::PageDouble(PageWorld& its_world, std::string_view html, int its_mode,
                       std::string its_url, PageDouble* outer)
    : world(its_world), url(std::move(its_url)), mode(its_mode), outer_(outer) {
    const bool whole = html.find("<body") != html.npos || html.find("<frameset") != html.npos;
    root_ = ParseHtml(whole ? std::string(html) : "<html><body>" + std::string(html));
    ReadNode(*root_);
    active = All([](const Node& n) { return n.tag == "BODY" || n.tag == "FRAMESET"; }).at(0);
    for (Node* node : All([](const Node& n) { return n.Has("autofocus"); })) active = node;
    for (Node* node : All([](const Node& n) { return n.IsFrame(); })) {
        const std::string address = Absolute(node->Attribute("src"));
        std::string inner = node->Attribute("srcdoc");
        if (inner.empty() && world.fetch) inner = world.fetch(address).value_or("");
        frames_.push_back({node, nullptr});
        SetFrame(frames_.size() - 1, inner, address);
    }
}

void PageDouble::SetFrame(std::size_t index, std::string_view html, const std::string& address) {
    auto& page = frames_[index].page;
    if (page) left_.push_back(std::move(page));
    page = std::make_unique<PageDouble>(world, html, mode, address, this);
}

std::vector<Node*> PageDouble::All(const std::function<bool(const Node&)>& accept) {
    auto nodes = root_->Below("*");
    std::erase_if(nodes, [&](const Node* node) { return !accept(*node); });
    return nodes;
}

Node& PageDouble::El(std::string_view id) {
    return *All([id](const Node& node) { return node.Attribute("id") == id; }).at(0);
}

bool PageDouble::IsReleased() const {
    const auto released = [](const auto& page) { return page->IsReleased(); };
    return std::ranges::all_of(sources_, [](const auto& s) { return s.second->empty(); }) &&
           std::ranges::all_of(frames_, released, &Frame::page) &&
           std::ranges::all_of(left_, released);
}

ComPtr<IDispatch> PageDouble::document() { return Give(root_.get()).Object(); }

Variant PageDouble::Give(Node* node) {
    Variant none(static_cast<IDispatch*>(nullptr));
    if (!node) {
        // An old document answers no object as an object without an address.
        if (mode < 9) none.Out()->vt = VT_DISPATCH;
        return none;
    }
    if (const auto known = objects_.find(node); known != objects_.end())
        return Variant(known->second);
    return Variant(new PageObject(*this, node, [this, node](const auto& name, const auto& a) {
        return node == root_.get() ? ReadDocument(name, a) : ReadElement(*node, name, a);
    }));
}

Variant PageDouble::Made(PageObject::Read read) {
    return Variant(new PageObject(*this, nullptr, std::move(read)));
}

Node* PageDouble::Hiding(const Node& object, const std::string& name) {
    const bool document = &object == root_.get();
    const auto hiding = All([&](const Node& node) {
        const bool hides = document ? node.tag == "FORM" || node.tag == "IMG" : IsControl(node);
        return hides && UpperCase(node.Attribute("name")) == name;
    });
    for (Node* node : hiding) {
        if (document || (object.tag == "FORM" && node->Form() == &object)) return node;
    }
    return nullptr;
}

Variant PageDouble::List(std::vector<Node*> nodes) {
    return Made([this, nodes](const std::string& name, const EventArguments& a) {
        if (name == "LENGTH") return Variant(static_cast<int>(nodes.size()));
        if (name != "ITEM") return Missing();
        const Variant key = a.At(0);
        if (key.get().vt == VT_I4) {
            const auto index = static_cast<std::size_t>(key.get().lVal);
            return Give(index < nodes.size() ? nodes[index] : nullptr);
        }
        std::vector<Node*> named = nodes;
        std::erase_if(named, [text = key.Text()](const Node* node) {
            return node->Attribute("id") != text && node->Attribute("name") != text;
        });
        return named.size() > 1 ? List(named) : Give(named.empty() ? nullptr : named.front());
    });
}

Variant PageDouble::Window() {
    return Made([this](const std::string& name, const EventArguments& a) {
        if (name == "LENGTH") return Variant(static_cast<int>(frames_.size()));
        if (name == "ITEM")
            return frames_[static_cast<std::size_t>(a.At(0).get().lVal)].page->Window();
        if (name == "DOCUMENT") {
            const bool denied =
                outer_ && url.starts_with("http") && OriginOf(url) != OriginOf(outer_->url);
            return denied ? Variant::Failure(E_ACCESSDENIED) : Variant(document().get());
        }
        if (name != "SCREEN") return Missing();
        if (!screen_dpi) return Give(nullptr);
        return Made([this](const std::string& dpi, const EventArguments&) {
            return Variant(dpi == "DEVICEXDPI" ? screen_dpi : 96);
        });
    });
}

Variant PageDouble::ReadDocument(const std::string& name, const EventArguments& a) {
    const std::string text = a.At(0).Text().value_or("");
    const auto with = [&](const std::string& attribute) {
        return All([&](const Node& node) { return node.Attribute(attribute) == text; });
    };
    if (name == "URL") return Variant(url);
    if (name == "DOCUMENTMODE") return Variant(mode);
    if (name == "READYSTATE") return Variant(ready_state);
    if (name == "DOCUMENTELEMENT") return Give(root_->children.front().get());
    if (name == "ACTIVEELEMENT") return Give(active);
    if (name == "HASFOCUS") return Variant(focused);
    if (name == "FORMS") return List(root_->Below("FORM"));
    if (name == "LINKS") return List(All(IsLink));
    if (name == "GETELEMENTSBYTAGNAME") return List(root_->Below(text));
    if (name == "GETELEMENTBYID") return Give(with("id").empty() ? nullptr : with("id").front());
    if (name == "LOCATION") return Give(root_.get());  // its "href" can be written
    if (name == "PARENTWINDOW" && mode < 11) return Window();
    if (name == "DEFAULTVIEW" && mode >= 9) return Window();
    if (name == "GETELEMENTSBYNAME") {
        auto named = with("name");
        std::erase_if(named, [](const Node* node) { return !HasName(*node); });
        return List(named);
    }
    if (name == "ELEMENTFROMPOINT") {
        const int x = a.At(0).get().lVal, y = a.At(1).get().lVal;
        const auto hits = All([x, y](const Node& node) {
            const auto box = BoxOfNode(node);
            return x >= box[0] && x < box[2] && y >= box[1] && y < box[3];
        });
        return Give(hits.empty() ? nullptr : hits.back());
    }
    if (name == "CREATEEVENT" && mode >= 9) {
        return Made([this](const std::string&, const EventArguments& event) {
            event_type_ = "on" + event.At(0).Text().value_or("");
            return Variant();
        });
    }
    return Missing();
}

Variant PageDouble::ReadElement(Node& e, const std::string& name, const EventArguments& a) {
    const std::string text = a.At(0).Text().value_or("");
    if (name == "TAGNAME") return Variant(e.tag);
    if (name == "ID") return Variant(e.Attribute("id"));
    if (name == "NAME" && HasName(e)) return Variant(e.Attribute("name"));
    if (name == "PARENTELEMENT") return Give(e.parent == root_.get() ? nullptr : e.parent);
    if (name == "INNERTEXT") return Variant(Seen(e.InnerText()));
    if (name == "OUTERHTML") return Variant(e.OuterHtml());
    if (name == "ISCONTENTEDITABLE") return Variant(e.Has("contenteditable"));
    if (name == "CLIENTLEFT" || name == "CLIENTTOP")
        return Variant(std::atoi(e.Attribute("data-border").c_str()));
    if (name == "SOURCEINDEX") {
        const auto all = root_->Below("*");
        return Variant(static_cast<int>(std::ranges::find(all, &e) - all.begin()));
    }
    if (name == "GETELEMENTSBYTAGNAME") return List(e.Below(text));
    if (name == "CONTAINS") {
        const Node* other = static_cast<PageObject*>(a.At(0).Object().get())->node();
        while (other && other != &e) other = other->parent;
        return Variant(other == &e);
    }
    if (name == "GETBOUNDINGCLIENTRECT") {
        return Made([box = BoxOfNode(e)](const std::string& edge, const EventArguments&) {
            const char* const edges[] = {"LEFT", "TOP", "RIGHT", "BOTTOM"};
            const auto at = std::ranges::find(edges, edge) - std::begin(edges);
            return Variant(std::to_string(box[static_cast<std::size_t>(at)]));
        });
    }
    if (name == "SCROLLINTOVIEW") return Variant(e.attributes["data-scrolled"] = "yes");
    if (name == "CLICK") return ClickWithoutFocus(e), Variant();
    if (name == "FIREEVENT" && mode < 11) return Variant(Fire(&e, text));
    if (name == "DISPATCHEVENT" && mode >= 9) return Variant(Fire(&e, event_type_));
    if (name == "GETATTRIBUTE") return ReadAttribute(e, LowerCase(text), a.At(1).Number() == 2);
    if (name == "GETATTRIBUTENODE") {
        const bool written = e.Has(LowerCase(text));
        if (!written && mode >= 8) return Give(nullptr);
        return Made([written](const auto&, const EventArguments&) { return Variant(written); });
    }
    if (name == "CONTENTWINDOW" && e.IsFrame())
        return std::ranges::find(frames_, &e, &Frame::node)->page->Window();
    if (name == "SRC" && (e.IsFrame() || e.tag == "IMG" || e.tag == "INPUT"))
        return Variant(e.Has("src") ? Absolute(e.Attribute("src")) : "");
    if (name == "HREF" && IsLink(e))
        return e.parent->tag == "SVG" ? List({}) : Variant(Absolute(e.Attribute("href")));
    return ReadControl(e, name);
}

Variant PageDouble::ReadAttribute(Node& e, const std::string& name, bool as_written) {
    // Old documents answer the property of that name, if they are not asked for what is written.
    if (mode < 8 && !as_written) return Variant("its property");
    if (e.Has(name)) return Variant(e.Attribute(name));
    return mode < 8 && name == "alt" ? Variant("") : Variant(static_cast<IDispatch*>(nullptr));
}

Variant PageDouble::ReadControl(Node& e, const std::string& name) {
    const auto options = e.Below("OPTION");
    if (name == "TEXT" && e.tag == "OPTION") return Variant(Seen(e.InnerText()));
    if (name == "VALUE" && e.tag == "OPTION") return Variant(OptionValue(e));
    if (name == "VALUE" && e.tag == "LI") return Variant(std::atoi(e.Attribute("value").c_str()));
    if (name == "ELEMENTS" && e.tag == "FORM") {
        auto controls = e.Below("*");
        std::erase_if(controls, [](const Node* node) {
            return !IsControl(*node) || (node->tag == "INPUT" && TypeOf(*node) == "image");
        });
        return List(controls);
    }
    if (!IsControl(e)) return Missing();
    if (name == "TYPE") return Variant(TypeOf(e));
    if (name == "DISABLED") return Variant(e.Has("disabled"));
    if (name == "FORM") return Give(e.Form());
    if (name == "CHECKED") return Variant(e.checked);
    if (name == "OPTIONS") return List(options);
    if (name == "LENGTH") return Variant(static_cast<int>(options.size()));
    if (name == "SELECTEDINDEX") return Variant(e.selected);
    if (name != "VALUE") return Missing();
    if (e.tag != "SELECT") return Variant(e.value);
    return Variant(e.selected < 0 ? "" : OptionValue(*options.at(e.selected)));
}

bool PageDouble::Write(Node& e, const std::string& name, const Variant& value) {
    const std::string text = value.Text().value_or("");
    if (name == "HREF") went_to = text;
    if (name == "SELECTEDINDEX") e.selected = value.get().lVal;
    if (name == "INNERTEXT") e.children.front()->text = text;
    if (name == "CHECKED") Check(e, value.Truth());
    if (name == "VALUE") {
        const bool number = TypeOf(e) == "number";
        // A field drops what its type does not allow; newer documents keep LF alone.
        const bool dropped = number && text.find_first_not_of("0123456789.-") != text.npos;
        e.value = dropped ? "" : text;
        if (mode >= 9) std::erase(e.value, '\r');
    }
    return name == "HREF" || name == "SELECTEDINDEX" || name == "INNERTEXT" || name == "CHECKED" ||
           name == "VALUE";
}

void PageDouble::Check(Node& node, bool checked) {
    const bool radio = TypeOf(node) == "radio";
    for (Node* other : All([&](const Node& n) { return radio && checked && n.tag == "INPUT"; })) {
        if (other->Attribute("name") == node.Attribute("name")) other->checked = false;
    }
    node.checked = checked;
}

std::string PageDouble::Absolute(std::string address) const {
    static const std::regex kScheme("[a-z]+:.*");
    std::string base = url;
    for (Node* node : root_->Below("BASE")) base = node->Attribute("href");
    address = Escaped(address, false);
    if (address.empty()) return "about:blank";
    if (std::regex_match(address, kScheme)) return address;
    if (address[0] == '/') return OriginOf(base) + address;
    if (address[0] == '#') return base.substr(0, base.find('#')) + address;
    if (address[0] == '?') return base.substr(0, base.find_first_of("?#")) + address;
    return base.substr(0, base.rfind('/') + 1) + address;
}

bool PageDouble::RunHandler(const Node& at, const std::string& code) {
    static const std::regex kSay("say\\('?([^')]*)");
    const bool asks = code.find("confirm(") != code.npos || code.find("alert(") != code.npos;
    const bool yes = !asks || !world.box || world.box();
    std::smatch say;
    if (std::regex_search(code, say, kSay)) {
        std::string word = say.str(1);
        if (word == "value") word = at.value;
        if (word == "confirm(") word = yes ? "true" : "false";
        said += (said.empty() ? "" : ",") + word;
        for (Node* log : All([](const Node& n) { return n.Attribute("id") == "log"; }))
            log->text = ReplaceAll(said, ",", " ");
    }
    return code.find("return false") == code.npos;
}

bool PageDouble::Fire(Node* node, const std::string& event, int key) {
    bool goes_on = true;
    for (Node* at = node; at; at = at->parent) {
        if (at->Has(event)) goes_on = RunHandler(*at, at->Attribute(event)) && goes_on;
    }
    const auto source = sources_.find(event == "onsubmit" ? node : root_.get());
    const auto number = kEvents.find(event);
    if (source == sources_.end() || number == kEvents.end()) return goes_on;
    const Variant told = Made([key](const auto&, const EventArguments&) { return Variant(key); });
    return source->second->Fire(number->second, {told.get()}) && goes_on;
}

void PageDouble::Focus(Node& node) {
    if (active == &node) return;
    if (active->tag != "BODY") Fire(active, "onbeforedeactivate");
    active = &node;
    Fire(&node, "onfocusin");
}

void PageDouble::Click(Node& node) {
    Focus(node);
    ClickWithoutFocus(node);
}

void PageDouble::Type(Node& node, std::string_view text) {
    for (const char c : text) {
        Press(node, static_cast<unsigned char>(c));
        node.value += c;
    }
}

void PageDouble::ClickWithoutFocus(Node& node) {
    if (node.Has("disabled")) return;
    const std::string type = node.tag == "INPUT" ? TypeOf(node) : "";
    if (type == "checkbox") node.checked = !node.checked;
    if (type == "radio") Check(node, true);
    if (!Fire(&node, "onclick")) return;
    Node* link = &node;
    while (link && !IsLink(*link)) link = link->parent;
    if (link && world.navigate) world.navigate(*this, Absolute(link->Attribute("href")));
    Node* const form = node.Form();
    if (form && node.IsSubmit() && Fire(form, "onsubmit")) Submit(*form, node);
}

void PageDouble::Submit(Node& form, const Node& button) {
    std::string query;
    for (Node* node : form.Below("*")) {
        const std::string type = TypeOf(*node);
        const bool unset = IsOneOf(type, {"radio", "checkbox"}) && !node->checked;
        const bool other_button = node->IsSubmit() && node != &button;
        if (!IsControl(*node) || !node->Has("name") || unset || other_button) continue;
        const auto options = node->Below("OPTION");
        std::string value =
            node->tag == "SELECT" ? OptionValue(*options.at(node->selected)) : node->value;
        std::erase(value, '\r');
        query += (query.empty() ? "?" : "&") + node->Attribute("name") + "=" + Escaped(value, true);
    }
    if (world.navigate) world.navigate(*this, Absolute(form.Attribute("action")) + query);
}

}  // namespace tamrin::test
