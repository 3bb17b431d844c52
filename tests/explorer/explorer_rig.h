#pragma once

#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>
#include <gtest/gtest.h>
#include <mshtml.h>
#include <ocidl.h>
#include <oleacc.h>
#include <servprov.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/explorer/browser_objects.h"
#include "platform/explorer/call_filter.h"
#include "platform/explorer/com_object.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/explorer_browser.h"
#include "platform/explorer/member_numbers.h"
#include "support/html_page.h"

namespace tamrin::test {

using Strings = std::vector<std::string>;

class ObjectDouble;
struct PageDouble;

// Which call of the browser's objects fails, counted over all of them.
struct Faults {
    int calls = 0;
    int failing = -1;  // none
    HRESULT how = S_OK;
    std::function<void()> meanwhile = [] {};  // what happens during that call

    // How the call that is being made is to end; S_OK for as usual.
    HRESULT Next() { return calls++ == failing ? (meanwhile(), how) : S_OK; }
};

// What the objects of a test share.
struct PageWorld {
    // Makes a page, a frame's too.
    PageDouble& Open(std::string_view html, const std::string& url = "http://site/");

    // The mode of the documents: 11 the newest, 7 an old one.
    int mode = 11;
    Faults faults;
    // Shows a dialog box of a page and answers whether it was confirmed.
    std::function<bool()> box;
    // The browser of all pages; null when it cannot be had.
    ObjectDouble* browser = nullptr;
    // Added to the numbers of members; a change makes all objects forget the old ones.
    DISPID first_number = 3000000;
    // Their names, the same for all objects; those first that the program calls by fixed numbers.
    std::vector<std::string> names = {
        "id",         "name",          "tagName",          "parentElement",        "hasFocus",
        "elements",   "getAttribute",  "getAttributeNode", "getElementsByTagName", "URL",
        "forms",      "activeElement", "documentElement",  "elementFromPoint",     "links",
        "readyState", "parentWindow",  "getElementById",   "getElementsByName",    "location"};
    std::vector<std::unique_ptr<PageDouble>> pages;
};

// An object of the browser, whose members are called by number.
class ObjectDouble : public ComObject<IHTMLDocument>,
                     public IConnectionPointContainer,
                     public IConnectionPoint,
                     public IServiceProvider {
public:
    ObjectDouble(PageWorld& its_world, std::string its_kind)
        : world(its_world), kind(std::move(its_kind)) {
        ++alive;
    }
    // One that still has a subscriber stays counted.
    ~ObjectDouble() override { alive -= sink_ ? 0 : 1; }
    static inline std::atomic<int> alive = 0;

    // Fires an event; its arguments are in reverse order. False when the program vetoed what
    // follows.
    bool Fire(DISPID event, std::vector<VARIANT> reversed) const {
        const auto sink = sink_;
        if (!sink) return true;
        DISPPARAMS given{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        Variant answer;
        sink->Invoke(event, IID_NULL, 0, DISPATCH_METHOD, &given, answer.Out(), nullptr, nullptr);
        return answer.Truth();
    }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id != IID_IConnectionPointContainer && id != IID_IServiceProvider)
            return ComObject::QueryInterface(id, object);
        AddRef();
        *object = static_cast<IServiceProvider*>(this);
        if (id == IID_IConnectionPointContainer)
            *object = static_cast<IConnectionPointContainer*>(this);
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ComObject::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return ComObject::Release(); }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* asked, UINT, LCID, DISPID* number) override {
        auto& names = world.names;
        const auto name = TextOf(asked[0], std::char_traits<OLECHAR>::length(asked[0]));
        const auto index = std::ranges::find(names, name) - names.begin();
        if (index == std::ssize(names)) names.push_back(name);
        *number = world.first_number + static_cast<DISPID>(index);
        return world.faults.Next() == S_OK ? S_OK : DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO* exception, UINT*) override {
        const ComPtr<IDispatch> self(this);
        const HRESULT fault = world.faults.Next();
        if (fault == S_FALSE && answer) answer->vt = VT_NULL;
        if (fault == DISP_E_EXCEPTION) {
            exception->scode = E_FAIL;
            exception->bstrDescription = SysAllocString(L"駄目\r\n");
        }
        if (fault != S_OK) return fault;
        const auto name = std::ranges::find_if(world.names, [&](const std::string& known) {
            return number == world.first_number + (&known - world.names.data()) ||
                   number == HideableMember(kind, known);
        });
        if (name == world.names.end()) return DISP_E_MEMBERNOTFOUND;
        const bool by_name = number >= world.first_number;
        const Variant value = Do(*name, by_name, flags, EventArguments(*parameters));
        if (value.Failed()) return value.error();
        VARIANT shared = value.get();
        return answer ? VariantCopy(answer, &shared) : S_OK;
    }
    STDMETHODIMP get_Script(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        if (FAILED(world.faults.Next()) || id != events_) return E_NOINTERFACE;
        AddRef();
        *point = this;
        return S_OK;
    }
    STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
        if (const HRESULT fault = world.faults.Next(); FAILED(fault)) return fault;
        *cookie = 1;
        // The browser asks for the event interface itself, not for IDispatch.
        return sink->QueryInterface(events_, reinterpret_cast<void**>(sink_.Out()));
    }
    STDMETHODIMP Unadvise(DWORD) override {
        sink_ = nullptr;
        return S_OK;
    }
    STDMETHODIMP QueryService(REFGUID, REFIID, void** object) override {
        if (FAILED(world.faults.Next()) || !world.browser) return E_NOINTERFACE;
        return world.browser->QueryInterface(IID_IDispatch, object);
    }

protected:
    bool Knows(REFIID id) const override { return id == IID_IDispatch || id == IID_IHTMLDocument; }
    // Gets, sets or calls a member. `by_name` when its number is not a fixed one.
    virtual Variant Do(const std::string& member, bool by_name, WORD flags,
                       const EventArguments& arguments) = 0;
    static Variant Unknown() { return Variant::Failure(DISP_E_MEMBERNOTFOUND); }

    PageWorld& world;
    const std::string kind;

private:
    // The interface of its events.
    const IID events_ = kind == "browser"    ? DIID_DWebBrowserEvents2
                        : kind == "document" ? __uuidof(HTMLDocumentEvents2)
                                             : __uuidof(HTMLFormElementEvents2);
    ComPtr<IDispatch> sink_;
};

// A browser window, or the browser of a frame. The test says what it shows and fires its events.
class BrowserDouble : public ObjectDouble {
public:
    BrowserDouble(PageWorld& its_world, IDispatch* document) : ObjectDouble(its_world, "browser") {
        is["Document"] = Variant(document);
        is["Name"] = Variant("Internet Explorer");
        is["ReadyState"] = Variant(4);
    }

    void SetWindow(HWND window) { is["HWND"] = Variant(static_cast<int>(NumberOf(window))); }
    static std::uint64_t NumberOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

    // Fires an event of this window, or of the frame whose browser `sender` is.
    void Tell(DISPID event, std::string_view url = {}, int code = 0, IDispatch* sender = nullptr) {
        const Variant address(url), status(code), from(sender ? sender : this);
        VARIANT text = address.get(), reference{};
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &text;
        Fire(event, {status.get(), {}, reference, from.get()});
    }

    // Its members, and what they answer. A method that is called keeps its first argument.
    std::map<std::string, Variant> is;
    // What every call answers from now on, unless it is S_OK.
    HRESULT failure = S_OK;

protected:
    Variant Do(const std::string& member, bool, WORD flags,
               const EventArguments& arguments) override {
        if (FAILED(failure)) return Variant::Failure(failure);
        const auto known = is.find(member);
        if (flags == DISPATCH_PROPERTYGET)
            return known == is.end() ? Unknown() : Variant(known->second.get());
        is[member] = arguments.At(0);
        if (member == "Quit") Fire(DISPID_ONQUIT, {});
        return {};
    }
};

// A page: nodes that answer as the browser's objects do, and its user. An event attribute is a word
// that the page says; "ask" shows a box and says what was answered. The attributes left, top, right
// and bottom are a node's place, and "at" is a point where it lies, both numbers in one.
struct PageDouble {
    // The document, as a program is given it.
    ComPtr<IDispatch> document() { return Give(root.get()).Object(); }
    // The elements of which that holds.
    std::vector<Node*> Where(const std::function<bool(Node&)>& wanted) const;
    std::vector<Node*> With(const std::string& attribute, std::string_view value) const {
        return Where([&](Node& node) { return node.Attribute(attribute) == value; });
    }

    // The user turns to another element.
    void Focus(Node& node) {
        if (active->tag != "BODY") Fire(active, "onbeforedeactivate");
        active = &node;
        Fire(&node, "onfocusin");
    }

    // Runs the page's handlers at a node and above, then the program's. False for a veto.
    bool Fire(Node* node, const std::string& its_event, int its_key = 0);

    // The object of a node, the same for as long as somebody holds it.
    Variant Give(Node* node);

    PageWorld& world;
    const std::string url;
    const std::unique_ptr<Node> root;
    Node* active = root->Below("BODY").at(0);
    std::string said;  // the words, each with a blank behind
    std::string ready_state = "complete";
    std::string went_to;  // what the program has put into location.href
    bool focused = false;
    int key = 0;                             // of the event that is being fired
    std::string event;                       // that was created last
    std::map<Node*, PageDouble*> frames;     // and what they show
    std::map<Node*, ObjectDouble*> objects;  // of nodes, that somebody holds
};

// Makes a visible window of a class of this name, in this thread; the class answers nothing of its
// own. One with WS_CHILD is a part of `above`, any other is owned by it.
inline HWND MakeWindow(const wchar_t* name, HWND above, DWORD style, const RECT& at = {}) {
    WNDCLASSW made{};
    made.lpfnWndProc = DefWindowProcW;
    made.lpszClassName = name;
    RegisterClassW(&made);  // fails where it is known already
    return CreateWindowExW(0, name, L"", style | WS_VISIBLE, at.left, at.top, at.right - at.left,
                           at.bottom - at.top, above, nullptr, nullptr, nullptr);
}

// Handles messages until `over` holds; calls from other threads are served meanwhile. False when
// that takes too long.
inline bool Pump(const std::function<bool()>& over) {
    const DWORD start = GetTickCount();
    while (!over() && GetTickCount() - start < 10000) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return over();
}

// The frame of a browser with the window of its page inside.
class BrowserWindowDouble {
public:
    explicit BrowserWindowDouble(const wchar_t* frame_class = L"IEFrame")
        : frame(MakeWindow(frame_class, nullptr, WS_OVERLAPPEDWINDOW, {100, 50, 700, 550})) {
        content = MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD, {0, 0, 580, 400});
        // A tab in the background has no height.
        MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD);
        SetWindowLongPtrW(content, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer));
    }
    ~BrowserWindowDouble() { DestroyWindow(frame); }

    // What the content window answers to those who ask for its document.
    void Show(IDispatch* document) { SetPropW(content, L"TamrinDocument", document); }

    HWND frame;
    HWND content;

private:
    static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
        auto* const document = static_cast<IDispatch*>(GetPropW(window, L"TamrinDocument"));
        if (message == asked && document)
            return LresultFromObject(IID_IHTMLDocument, wparam, document);
        return DefWindowProcW(window, message, wparam, lparam);
    }
};

// Writes down what a browser and its page tell; with a page also the active element's id and value.
class Log : public BrowserEvents, public DocumentEvents {
public:
    explicit Log(Browser& browser, Document its_page = {})
        : page(std::move(its_page)),
          connection(browser.Connect(*this)),
          page_connection(page.Connect(*this)) {}

    void DocumentComplete(bool top) override { Note(top ? "complete" : "frame complete"); }
    void BeforeNavigate2(const std::string& url) override { Note("before " + url); }
    void NavigateComplete2() override { Note("shown"); }
    void NavigateError(const std::string& url, const std::string& reason) override {
        Note("error " + url + " " + reason);
    }
    void OnQuit() override { Note("quit"); }
    void onclick() override { Note("click"); }
    void onfocusin() override { Note("focus"); }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int key) override { Note("key" + std::to_string(key)); }
    void onsubmit() override { Note("submit"); }
    void Note(const std::string& event) {
        const Element active = page.activeElement();
        lines.push_back(active ? event + " " + active.id() + "=" + active.value() : event);
        if (during) during(event);
    }

    Document page;
    Strings lines;
    std::function<void(const std::string& event)> during;  // runs in each handler
    std::unique_ptr<Connection> connection;
    std::unique_ptr<Connection> page_connection;
};

// A browser that shows a page. At the end of a test nobody may hold any of their objects.
class ExplorerTest : public testing::Test {
protected:
    ExplorerTest() {
        calls.SetNow([this] { return now; });
    }
    ~ExplorerTest() override {
        browser = nullptr;
        it = nullptr;
        EXPECT_EQ(ObjectDouble::alive.exchange(0), 0);
    }
    ComPtr<BrowserDouble> NewBrowser(const ComPtr<IDispatch>& document) {
        return ComPtr(new BrowserDouble(world, document.get()));
    }
    void Show(ComPtr<BrowserDouble> shown) {
        it = std::move(shown);
        browser = std::make_unique<ExplorerBrowser>(calls, Called(it));
    }
    Document Open(std::string_view html) {
        page = &world.Open(html);
        Show(NewBrowser(page->document()));
        return browser->document();
    }
    // A browser as the program calls it.
    DispatchObject Called(const ComPtr<BrowserDouble>& object) {
        return BrowserObject(calls, ComPtr<IDispatch>(object.get()));
    }
    Node& El(std::string_view id) { return *page->With("id", id).at(0); }

    const Apartment apartment;
    std::uint64_t now = 0;
    ComCalls calls;
    PageWorld world;
    PageDouble* page = nullptr;  // that is shown
    ComPtr<BrowserDouble> it;
    std::unique_ptr<ExplorerBrowser> browser;
};

}  // namespace tamrin::test
