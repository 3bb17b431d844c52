#pragma once

#include <windows.h>

#include <exdisp.h>
#include <mshtml.h>
#include <servprov.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "explorer/com_double.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/variant.h"
#include "support/html_page.h"

namespace tamrin::test {

class PageDouble;

// An object of a page, as the browser gives it. Members have names in any case, with numbers that
// are the same for all objects; forms and documents also know theirs by those of mshtmdid.h.
class PageObject : public DispatchDouble<IHTMLDocument>,
                   public EventContainer,
                   public IServiceProvider {
public:
    // Answers a member by its name in capitals: a property or, with its arguments, a method.
    using Read = std::function<Variant(const std::string& name, const EventArguments& arguments)>;

    // `node` is null for what is neither the document nor an element.
    PageObject(PageDouble& page, Node* node, Read read);
    ~PageObject() override;

    Node* node() const { return node_; }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return DispatchDouble::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return DispatchDouble::Release(); }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) override;
    STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO*, UINT*) override;
    STDMETHODIMP get_Script(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP QueryService(REFGUID service, REFIID id, void** object) override;

private:
    EventSource* Source(REFIID id) override;

    PageDouble& page_;
    Node* const node_;
    const Read read_;
};

// The pages of a test, and what lies around them.
class PageWorld {
public:
    Faults faults;
    // Answers the page of a frame's address, nothing for none.
    std::function<std::optional<std::string>(const std::string& url)> fetch;
    // Called when a page is to be left for an address.
    std::function<void(PageDouble& page, const std::string& url)> navigate;
    // Shows a dialog box of a page and answers whether it was confirmed; null for always.
    std::function<bool()> box;
    // The browser of a frame's page; null when it cannot be had.
    std::function<ComPtr<IWebBrowser2>(PageDouble& page)> browser_of;
    // Added to the numbers of members; a change makes all objects forget the old ones.
    DISPID first_number = 3000000;
    std::vector<std::string> names;  // of members, by their numbers

    // Makes a page. `mode` is its document mode: 11 the newest, 5 to 7 old.
    PageDouble& Open(std::string_view html, int mode = 11,
                     const std::string& url = "http://site/dir/page");
    // The page that was opened last, without those of frames.
    PageDouble& page() { return *pages_.back(); }
    // Whether the program holds no object of a page, and no subscription.
    bool IsReleased() const;

private:
    std::vector<std::unique_ptr<PageDouble>> pages_;
};

// A page: nodes that answer as the browser's objects do, and its user.
class PageDouble {
public:
    PageDouble(PageWorld& its_world, std::string_view html, int its_mode, std::string its_url,
               PageDouble* outer = nullptr);

    // The document, as a program is given it.
    ComPtr<IDispatch> document();
    Node& El(std::string_view id);
    std::vector<Node*> All(const std::function<bool(const Node&)>& accept);
    // The page in a frame, in document order.
    PageDouble& frame(std::size_t index) { return *frames_[index].page; }
    void SetFrame(std::size_t index, std::string_view html, const std::string& address);

    // What the user does.
    void Focus(Node& node);
    void Click(Node& node);
    void Type(Node& node, std::string_view text);
    void Press(Node& node, int key) { Fire(&node, "onkeypress", key); }

    // Runs the page's handlers at a node and above, then the program's. False for a veto. Handlers
    // know say(word), say(value), say(confirm()), alert() and "return false".
    bool Fire(Node* node, const std::string& event, int key = 0);
    bool IsReleased() const;

    PageWorld& world;
    const std::string url;
    const int mode;
    std::string said;  // the words, with commas
    std::string ready_state = "complete";
    std::string went_to;  // what the program has put into location.href
    Node* active = nullptr;
    bool focused = false;
    int screen_dpi = 96;  // 0 for a page without a screen

private:
    friend class PageObject;
    struct Frame {
        Node* node;
        std::unique_ptr<PageDouble> page;
    };

    Variant ReadDocument(const std::string& name, const EventArguments& arguments);
    Variant ReadElement(Node& e, const std::string& name, const EventArguments& arguments);
    Variant ReadControl(Node& e, const std::string& name);
    Variant ReadAttribute(Node& e, const std::string& name, bool as_written);
    bool Write(Node& e, const std::string& name, const Variant& value);
    // The element of the page that hides a member of an object.
    Node* Hiding(const Node& object, const std::string& name);
    Variant Give(Node* node);
    Variant Made(PageObject::Read read);
    Variant List(std::vector<Node*> nodes);
    Variant Window();
    std::string Absolute(std::string address) const;
    bool RunHandler(const Node& at, const std::string& code);
    void Check(Node& node, bool checked);
    void ClickWithoutFocus(Node& node);
    void Submit(Node& form, const Node& button);

    PageDouble* const outer_;
    std::unique_ptr<Node> root_;
    std::vector<Frame> frames_;
    std::vector<std::unique_ptr<PageDouble>> left_;  // pages that frames showed before
    std::map<Node*, PageObject*> objects_;           // those that somebody holds
    std::map<Node*, ComPtr<EventSource>> sources_;
    std::string event_type_;
};

}  // namespace tamrin::test
