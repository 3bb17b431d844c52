#include "support/html_page.h"

#include <set>

#include "platform/text.h"

namespace tamrin::test {
namespace {

// Removes the bytes before the first one of `ends` from `html` and answers them.
std::string Take(std::string_view& html, std::string_view ends) {
    const std::string_view taken = html.substr(0, html.find_first_of(ends));
    html.remove_prefix(taken.size());
    return std::string(taken);
}

bool Skip(std::string_view& html, std::string_view text) {
    if (!html.starts_with(text)) return false;
    html.remove_prefix(text.size());
    return true;
}

// Reads the attributes and the end of a tag.
void ReadAttributes(std::string_view& html, Node& node) {
    while (!html.empty() && !Skip(html, ">")) {
        if (Skip(html, " ")) continue;
        std::string& value = node.attributes[Take(html, " =>")];
        if (!Skip(html, "=")) continue;
        const std::string_view quote = html.substr(0, 1);
        const bool quoted = Skip(html, "\"") || Skip(html, "'");
        value = Take(html, quoted ? quote : " >");
        if (quoted) Skip(html, quote);
    }
}

void SetFirstState(Node& node) {
    node.value = node.tag == "TEXTAREA" ? node.InnerText() : node.Attribute("value");
    node.checked = node.Has("checked");
    if (node.tag == "SELECT" && !node.Below("OPTION").empty()) node.selected = 0;
    for (const auto& child : node.children) SetFirstState(*child);
}

}  // namespace

std::string Node::Attribute(const std::string& name) const {
    return Has(name) ? attributes.at(name) : "";
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
        const bool accepted = tag_name == "*" || UpperCase(tag_name) == child->tag;
        if (accepted && !child->tag.empty()) result.push_back(child.get());
        for (Node* node : child->Below(tag_name)) result.push_back(node);
    }
    return result;
}

Node* Node::Form() {
    Node* node = this;
    while (node && node->tag != "FORM") node = node->parent;
    return node;
}

bool Node::IsSubmit() const {
    const std::string type = Attribute("type");
    if (tag == "BUTTON" && type.empty()) return true;
    return (tag == "INPUT" || tag == "BUTTON") && (type == "submit" || type == "image");
}

std::unique_ptr<Node> ParseHtml(std::string_view html) {
    static const std::set<std::string> kVoid{"FRAME", "IMG", "INPUT"};
    auto root = std::make_unique<Node>();
    Node* open = root.get();
    const auto add_node = [&] {
        Node& node = *open->children.emplace_back(std::make_unique<Node>());
        node.parent = open;
        return &node;
    };
    while (!html.empty()) {
        if (Skip(html, "</")) {
            const std::string name = UpperCase(Take(html, ">"));
            Node* closed = open;
            while (closed->parent && closed->tag != name) closed = closed->parent;
            if (closed->parent) open = closed->parent;
            Skip(html, ">");
        } else if (Skip(html, "<")) {
            const std::string name = UpperCase(Take(html, " >"));
            if (name == "OPTION" && open->tag == name) open = open->parent;
            Node* const node = add_node();
            node->tag = name;
            ReadAttributes(html, *node);
            if (!kVoid.contains(name)) open = node;
        } else {
            add_node()->text = Take(html, "<");
        }
    }
    SetFirstState(*root);
    return root;
}

}  // namespace tamrin::test
