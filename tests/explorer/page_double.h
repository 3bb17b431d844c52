#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "explorer/browser_double.h"
#include "platform/explorer/variant.h"
#include "support/html_page.h"

namespace tamrin::test {

class PageDouble;

// The pages of a test, and what lies around them.
struct PageWorld {
    // Makes a page, a frame's too. `mode` is its document mode: 11 the newest, 5 to 7 old.
    PageDouble& Open(std::string_view html, int mode, const std::string& url = "http://site/");

    Faults faults;
    // Shows a dialog box of a page and answers whether it was confirmed.
    std::function<bool()> box;
    // The browser of all pages; null when it cannot be had.
    ObjectDouble* browser = nullptr;
    // Added to the numbers of members; a change makes all objects forget the old ones.
    DISPID first_number = 3000000;
    // Their names, those first that the program calls by fixed numbers.
    std::vector<std::string> names = Words(
        "id name tagName parentElement innerText sourceIndex elements getAttribute "
        "getAttributeNode getElementsByTagName getBoundingClientRect click fireEvent "
        "scrollIntoView URL activeElement documentElement elementFromPoint forms "
        "getElementById getElementsByName hasFocus links location parentWindow readyState");
    std::vector<std::unique_ptr<PageDouble>> pages;
};

// A page: nodes that answer as the browser's objects do, and its user. An event attribute is a word
// that the page says; "ask" shows a box and says what was answered. data-box is a node's place,
// from the left top to the right bottom.
class PageDouble {
public:
    PageDouble(PageWorld& world, std::string_view html, int mode, std::string url);

    // The document, as a program is given it.
    ComPtr<IDispatch> document() { return Give(root.get()).Object(); }
    Node& El(std::string_view id) { return *With("id", id).at(0); }
    std::vector<Node*> With(const std::string& attribute, std::string_view value);
    // What a frame shows from now on.
    void SetFrame(Node& frame, std::string_view html, const std::string& url);

    // The user turns to another element.
    void Focus(Node& node);

    // Runs the page's handlers at a node and above, then the program's. False for a veto.
    bool Fire(Node* node, const std::string& event, int key = 0);

    // The object of a node, the same for as long as somebody holds it.
    Variant Give(Node* node);
    // An object of another kind: "list", "window", "location".
    Variant Make(const std::string& kind, std::vector<Node*> nodes = {});

    PageWorld& world;
    const std::string url;
    const int mode;
    std::string said;  // the words, each with a blank behind
    std::string ready_state = "complete";
    std::string went_to;  // what the program has put into location.href
    Node* active = nullptr;
    bool focused = false;
    int screen_dpi = 96;
    std::unique_ptr<Node> root;
    std::map<Node*, PageDouble*> frames;
    std::map<Node*, ObjectDouble*> objects;  // of nodes, that somebody holds
    std::string event_type;                  // of the event that was created last
};

}  // namespace tamrin::test
