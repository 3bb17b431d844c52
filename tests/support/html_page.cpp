#include "support/html_page.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace tamrin::test {
namespace {

std::string Capitals(std::string_view text) {
    std::string capitals(text);
    for (char& c : capitals) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    return capitals;
}

std::string Decoded(std::string_view html) {
    constexpr std::pair<std::string_view, const char*> kEntities[] = {
        {"&quot;", "\""}, {"&#39;", "'"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}};
    std::string text(html);
    for (const auto& [entity, character] : kEntities) {
        for (auto at = text.find(entity); at != text.npos; at = text.find(entity, at + 1)) {
            text.replace(at, entity.size(), character);
        }
    }
    return text;
}

// Removes the bytes before the first one of `ends` from `html` and answers them.
std::string_view Take(std::string_view& html, std::string_view ends) {
    const std::string_view taken = html.substr(0, html.find_first_of(ends));
    html.remove_prefix(taken.size());
    return taken;
}

bool Skip(std::string_view& html, std::string_view text) {
    if (!html.starts_with(text)) return false;
    html.remove_prefix(text.size());
    return true;
}

// Reads the attributes and the end of a tag.
void ReadAttributes(std::string_view& html, Node& node) {
    while (!html.empty() && !Skip(html, ">")) {
        if (Skip(html, " ") || Skip(html, "\n")) continue;
        std::string& value = node.attributes[std::string(Take(html, " \n=>"))];
        if (!Skip(html, "=")) continue;
        const std::string_view quote = html.substr(0, 1);
        const bool quoted = Skip(html, "\"") || Skip(html, "'");
        value = Decoded(Take(html, quoted ? quote : " \n>"));
        if (quoted) Skip(html, quote);
    }
}

Node& AddNode(Node& parent, std::string tag, std::string text) {
    Node& node = *parent.children.emplace_back(std::make_unique<Node>());
    node.tag = std::move(tag);
    node.text = std::move(text);
    node.parent = &parent;
    return node;
}

void SetFirstState(Node& node) {
    node.value = node.tag == "TEXTAREA" ? node.InnerText() : node.Attribute("value");
    node.checked = node.Has("checked");
    if (node.tag == "SELECT" && !node.Below("OPTION").empty()) node.selected = 0;
    for (const auto& child : node.children) SetFirstState(*child);
}

}  // namespace

std::string Node::Attribute(const std::string& name) const {
    const auto found = attributes.find(name);
    return found == attributes.end() ? "" : found->second;
}

std::string Node::InnerText() const {
    std::string result = text;
    for (const auto& child : children) result += child->InnerText();
    return result;
}

std::string Node::OuterHtml() const {
    if (tag.empty()) return text;
    std::string html = "<" + tag;
    for (const auto& [name, attribute] : attributes) html += " " + name + "=\"" + attribute + "\"";
    html += ">";
    for (const auto& child : children) html += child->OuterHtml();
    return html + "</" + tag + ">";
}

std::vector<Node*> Node::Below(std::string_view tag_name) {
    std::vector<Node*> result;
    for (const auto& child : children) {
        if (child->tag.empty()) continue;
        if (tag_name == "*" || Capitals(tag_name) == child->tag) result.push_back(child.get());
        std::ranges::copy(child->Below(tag_name), std::back_inserter(result));
    }
    return result;
}

Node* Node::Form() {
    Node* node = this;
    while (node && node->tag != "FORM") node = node->parent;
    return node;
}

Node* Node::DefaultButton() {
    Node* const form = Form();
    for (Node* node : form ? form->Below("*") : std::vector<Node*>()) {
        if (node->IsSubmit()) return node;
    }
    return nullptr;
}

bool Node::IsSubmit() const {
    const std::string type = Attribute("type");
    if (tag == "BUTTON" && type.empty()) return true;
    return (tag == "INPUT" || tag == "BUTTON") && (type == "submit" || type == "image");
}

std::unique_ptr<Node> ParseHtml(std::string_view html) {
    static const std::set<std::string> kVoid{"AREA", "BASE", "BR",   "COL",   "FRAME",
                                             "HR",   "IMG",  "LINK", "INPUT", "META"};
    auto root = std::make_unique<Node>();
    Node* open = root.get();
    while (!html.empty()) {
        if (Skip(html, "</")) {
            const std::string name = Capitals(Take(html, ">"));
            Node* closed = open;
            while (closed->parent && closed->tag != name) closed = closed->parent;
            if (closed->parent) open = closed->parent;
            Skip(html, ">");
        } else if (Skip(html, "<!")) {
            Take(html, ">");
            Skip(html, ">");
        } else if (Skip(html, "<")) {
            const std::string name = Capitals(Take(html, " \n>"));
            if (name == "OPTION" && open->tag == name) open = open->parent;
            Node& node = AddNode(*open, name, "");
            ReadAttributes(html, node);
            if (!kVoid.contains(name)) open = &node;
        } else {
            AddNode(*open, "", Decoded(Take(html, "<")));
        }
    }
    SetFirstState(*root);
    return root;
}

}  // namespace tamrin::test
