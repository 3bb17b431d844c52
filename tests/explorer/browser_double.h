#pragma once

#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>
#include <mshtml.h>
#include <ocidl.h>
#include <servprov.h>

#include <atomic>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/explorer/com_object.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/variant.h"
#include "support/html_page.h"

namespace tamrin::test {

inline std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// Which call of the browser's objects fails, counted over all of them.
struct Faults {
    int calls = 0;
    int failing = -1;  // none
    HRESULT how = S_OK;

    // How the call that is being made is to end; S_OK for as usual.
    HRESULT Next() { return calls++ == failing ? how : S_OK; }
};

// An object of the browser, whose members are called by number.
class ObjectDouble : public ComObject<IHTMLDocument>,
                     public IConnectionPointContainer,
                     public IConnectionPoint,
                     public IServiceProvider {
public:
    // `events` is the interface of its events; GUID_NULL for an object without.
    ObjectDouble(Faults& faults, const IID& events) : faults_(faults), events_(events) { ++alive; }
    // One that still has a subscriber stays counted.
    ~ObjectDouble() override { alive -= sink_ ? 0 : 1; }
    static inline std::atomic<int> alive = 0;

    // Fires an event; its arguments are in reverse order. False when the program vetoed what
    // follows.
    bool Fire(DISPID event, std::vector<VARIANT> reversed) const {
        const auto sink = sink_;
        if (!sink) return true;
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        Variant answer;
        sink->Invoke(event, IID_NULL, 0, DISPATCH_METHOD, &parameters, answer.Out(), nullptr,
                     nullptr);
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
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) override {
        *number = Number(TextOf(names[0], std::char_traits<OLECHAR>::length(names[0])));
        return faults_.Next() == S_OK && *number >= 0 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO* exception, UINT*) override {
        const ComPtr<IDispatch> self(this);
        const HRESULT fault = faults_.Next();
        if (fault == S_FALSE && answer) answer->vt = VT_NULL;
        if (fault == DISP_E_EXCEPTION) {
            exception->scode = E_FAIL;
            exception->bstrDescription = SysAllocString(L"駄目\r\n");
        }
        if (fault != S_OK) return fault;
        const Variant value = Do(number, flags, EventArguments(*parameters));
        if (value.Failed()) return value.error();
        VARIANT shared = value.get();
        return answer ? VariantCopy(answer, &shared) : S_OK;
    }
    STDMETHODIMP get_Script(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        *point = nullptr;
        if (FAILED(faults_.Next()) || id != events_) return E_NOINTERFACE;
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
        if (const HRESULT fault = faults_.Next(); FAILED(fault)) return fault;
        *cookie = 1;
        // The browser asks for the event interface itself, not for IDispatch.
        return sink->QueryInterface(events_, reinterpret_cast<void**>(sink_.Out()));
    }
    STDMETHODIMP Unadvise(DWORD) override {
        sink_ = nullptr;
        return S_OK;
    }
    STDMETHODIMP QueryService(REFGUID, REFIID, void** object) override {
        *object = nullptr;
        if (FAILED(faults_.Next()) || !Server()) return E_NOINTERFACE;
        return Server()->QueryInterface(IID_IDispatch, object);
    }

protected:
    bool Knows(REFIID id) const override { return id == IID_IDispatch || id == IID_IHTMLDocument; }
    // The number of a member; negative when nothing has such a member.
    virtual DISPID Number(const std::string& member) const = 0;
    // Gets, sets or calls a member.
    virtual Variant Do(DISPID number, WORD flags, const EventArguments& arguments) = 0;
    // The browser that it knows; null for none.
    virtual ObjectDouble* Server() { return nullptr; }

    Faults& faults_;

private:
    const IID events_;
    ComPtr<IDispatch> sink_;
};

// An object that keeps what it is given.
class BagDouble : public ObjectDouble {
public:
    using Members = std::map<std::string, std::variant<int, bool>>;

    BagDouble(Faults& faults, const Members& members, const IID& events = GUID_NULL)
        : ObjectDouble(faults, events) {
        for (const auto& [name, value] : members)
            is[name] = std::visit([](auto known) { return Variant(known); }, value);
    }

    // Its members, and what they answer. A method that is called keeps its first argument.
    std::map<std::string, Variant> is;
    // What every call answers from now on, unless it is S_OK.
    HRESULT failure = S_OK;

protected:
    DISPID Number(const std::string& member) const override {
        const auto at = is.find(member);
        return at == is.end() ? DISPID_UNKNOWN : static_cast<DISPID>(std::distance(is.begin(), at));
    }
    Variant Do(DISPID number, WORD flags, const EventArguments& arguments) override {
        if (FAILED(failure)) return Variant::Failure(failure);
        auto& [member, value] = *std::next(is.begin(), number);
        if (flags == DISPATCH_PROPERTYGET) return Variant(value.get());
        value = arguments.At(0);
        if (member == "Quit") Fire(DISPID_ONQUIT, {});
        return {};
    }
};

// A browser window, or the browser of a frame. The test says what it shows and fires its events.
class BrowserDouble : public BagDouble {
public:
    explicit BrowserDouble(Faults& faults) : BagDouble(faults, {}, DIID_DWebBrowserEvents2) {
        for (const std::string& name :
             Words("Navigate2 Quit Document Busy HWND Left Top Width Height ToolBar MenuBar "
                   "AddressBar StatusBar FullScreen Visible"))
            is[name] = Variant();
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
};

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
    std::map<Node*, PageDouble*> frames;     // and what they show
    std::map<Node*, ObjectDouble*> objects;  // of nodes, that somebody holds
    std::string event_type;                  // of the event that was created last
};

}  // namespace tamrin::test
