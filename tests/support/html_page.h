#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin::test {

// A node of a page in memory: an element, or a piece of text, whose tag is empty.
struct Node {
    std::string tag;   // in capitals
    std::string text;  // of a piece of text
    std::map<std::string, std::string> attributes;
    // What a user changes.
    std::string value;
    bool checked = false;
    int selected = -1;  // of a select: the position of its option

    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;

    std::string Attribute(const std::string& name) const;  // "" when there is none
    bool Has(const std::string& name) const { return attributes.contains(name); }
    std::string InnerText() const;
    std::string OuterHtml() const;

    // The elements below with that tag, "*" for all, in document order.
    std::vector<Node*> Below(std::string_view tag_name);

    // The form that holds this element; null when there is none.
    Node* Form();
    bool IsSubmit() const;
    bool IsFrame() const { return tag == "IFRAME" || tag == "FRAME"; }
};

// Reads a page of tags, attributes with or without quotation marks, and texts. The end of an outer
// element, or of an option the next one, ends an element too. The root has no tag.
std::unique_ptr<Node> ParseHtml(std::string_view html);

}  // namespace tamrin::test
