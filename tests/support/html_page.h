#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin::test {

// A node of a page in memory.
struct Node {
    std::string tag;  // capitals
    std::map<std::string, std::string> attributes;
    std::string text;  // directly inside, joined
    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;

    // What a user changes.
    std::string value;
    bool checked = false;
    int selected = -1;

    std::string Attribute(const std::string& name) const;
    bool Has(const std::string& name) const { return attributes.contains(name); }
    std::string InnerText() const;
    std::string OuterHtml() const;
    std::vector<Node*> Below(std::string_view tag_name);  // "*" for all, in document order
};

// Reads a small, well-formed page: tags with quoted or bare attributes, and text.
std::unique_ptr<Node> ParseHtml(std::string_view html);

}  // namespace tamrin::test
