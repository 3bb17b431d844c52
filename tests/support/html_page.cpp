#include "support/html_page.h"

#include <set>

namespace tamrin::test {
namespace {

std::string Capitals(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    }
    return result;
}

void TakeStartValue(Node& node) {
    if (node.tag == "INPUT" || node.tag == "BUTTON") node.value = node.Attribute("value");
    if (node.tag == "TEXTAREA") node.value = node.text;
    node.checked = node.Has("checked");
    if (node.tag == "SELECT" && !node.Below("OPTION").empty()) node.selected = 0;
    for (const auto& child : node.children) TakeStartValue(*child);
}

class Reader {
public:
    explicit Reader(std::string_view html) : html_(html) {}

    std::unique_ptr<Node> Read() {
        auto root = std::make_unique<Node>();
        Node* open = root.get();
        while (at_ < html_.size()) {
            if (html_[at_] != '<') {
                open->text += Until('<');
            } else if (html_.substr(at_, 2) == "</") {
                Until('>');
                ++at_;
                if (open->parent) open = open->parent;
            } else {
                ++at_;
                open = AddTag(*open);
            }
        }
        TakeStartValue(*root);
        return root;
    }

private:
    std::string_view Until(char stop) {
        const auto end = std::min(html_.find(stop, at_), html_.size());
        const auto piece = html_.substr(at_, end - at_);
        at_ = end;
        return piece;
    }

    Node* AddTag(Node& parent) {
        static const std::set<std::string> kVoid{"INPUT", "IMG", "BR", "HR", "META", "FRAME"};
        auto node = std::make_unique<Node>();
        std::string name;
        while (at_ < html_.size() && html_[at_] != ' ' && html_[at_] != '>') name += html_[at_++];
        node->tag = Capitals(name);
        node->parent = &parent;
        while (at_ < html_.size() && html_[at_] != '>') AddAttribute(*node);
        ++at_;
        parent.children.push_back(std::move(node));
        Node* added = parent.children.back().get();
        return kVoid.contains(added->tag) ? &parent : added;
    }

    void AddAttribute(Node& node) {
        while (at_ < html_.size() && html_[at_] == ' ') ++at_;
        std::string name;
        while (at_ < html_.size() && html_.substr(at_, 1).find_first_of(" =>") != 0) {
            name += html_[at_++];
        }
        if (name.empty()) return;
        std::string value;
        if (at_ < html_.size() && html_[at_] == '=') {
            ++at_;
            if (html_[at_] == '"') {
                ++at_;
                value = Until('"');
                ++at_;
            } else {
                while (at_ < html_.size() && html_[at_] != ' ' && html_[at_] != '>') {
                    value += html_[at_++];
                }
            }
        }
        node.attributes[name] = value;
    }

    std::string_view html_;
    std::size_t at_ = 0;
};

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
    std::string html = "<" + tag;
    for (const auto& [name, attribute] : attributes) html += " " + name + "=\"" + attribute + "\"";
    html += ">" + text;
    for (const auto& child : children) html += child->OuterHtml();
    return html + "</" + tag + ">";
}

std::vector<Node*> Node::Below(std::string_view tag_name) {
    std::vector<Node*> result;
    for (const auto& child : children) {
        if (tag_name == "*" || Capitals(tag_name) == child->tag) result.push_back(child.get());
        const auto deeper = child->Below(tag_name);
        result.insert(result.end(), deeper.begin(), deeper.end());
    }
    return result;
}

std::unique_ptr<Node> ParseHtml(std::string_view html) { return Reader(html).Read(); }

}  // namespace tamrin::test
