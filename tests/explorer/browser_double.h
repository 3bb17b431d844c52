#pragma once

#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>
#include <mshtml.h>
#include <ocidl.h>
#include <servprov.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/explorer/com_object.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/variant.h"

namespace tamrin::test {

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
    // One that still has subscribers stays counted.
    ~ObjectDouble() override { alive -= sinks_.empty() ? 1 : 0; }
    static inline int alive = 0;

    // Fires an event; its arguments are in reverse order. False when a sink vetoed what follows.
    bool Fire(DISPID event, std::vector<VARIANT> reversed) const {
        bool goes_on = true;
        const auto sinks = sinks_;
        for (const auto& [cookie, sink] : sinks) {
            DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
            VARIANT answer{};
            sink->Invoke(event, IID_NULL, 0, DISPATCH_METHOD, &parameters, &answer, nullptr,
                         nullptr);
            goes_on = goes_on && answer.vt == VT_BOOL && answer.boolVal == VARIANT_TRUE;
        }
        return goes_on;
    }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IConnectionPointContainer) {
            *object = static_cast<IConnectionPointContainer*>(this);
        } else if (id == IID_IServiceProvider) {
            *object = static_cast<IServiceProvider*>(this);
        } else {
            return ComObject::QueryInterface(id, object);
        }
        AddRef();
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
        *cookie = ++last_;
        // The browser asks for the event interface itself, not for IDispatch.
        return sink->QueryInterface(events_, reinterpret_cast<void**>(sinks_[last_].Out()));
    }
    STDMETHODIMP Unadvise(DWORD cookie) override {
        return sinks_.erase(cookie) == 1 ? S_OK : E_FAIL;
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
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD last_ = 0;
};

// A browser window, or the browser of a frame. The test says what it shows and fires its events.
class BrowserDouble : public ObjectDouble {
public:
    explicit BrowserDouble(Faults& faults) : ObjectDouble(faults, DIID_DWebBrowserEvents2) {
        is["Name"] = Variant(std::string_view("Internet Explorer"));
        is["ReadyState"] = Variant(4);
    }

    // Its properties.
    std::map<std::string, Variant> is;
    // What every call answers from now on, unless it is S_OK.
    HRESULT failure = S_OK;
    // The calls that change something: "Navigate2 http://...", "Left 10", "Visible True", "Quit ".
    std::vector<std::string> lines;

    void SetWindow(HWND window) { is["HWND"] = Variant(static_cast<int>(NumberOf(window))); }
    static std::uint64_t NumberOf(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

    // Fires an event of this window, or of the frame whose browser `sender` is.
    void FireFrom(IDispatch* sender, DISPID event, std::string_view url = {}, int code = 0) {
        const Variant address(url), status(code), from(sender);
        VARIANT values[] = {status.get(), {}, address.get(), {}};
        std::vector<VARIANT> arguments(4);
        for (std::size_t i = 0; i < 3; ++i) {
            arguments[i].vt = VT_BYREF | VT_VARIANT;
            arguments[i].pvarVal = &values[i];
        }
        arguments[3] = from.get();
        ObjectDouble::Fire(event, arguments);
    }
    void Fire(DISPID event, std::string_view url = {}, int code = 0) {
        FireFrom(this, event, url, code);
    }

private:
    static constexpr std::string_view kMembers[] = {
        "Navigate2", "Quit",    "Name",       "HWND",      "Document",  "Busy",
        "Left",      "Top",     "Width",      "Height",    "ToolBar",   "ReadyState",
        "Visible",   "MenuBar", "AddressBar", "StatusBar", "FullScreen"};

    DISPID Number(const std::string& member) const override {
        const auto* const at = std::ranges::find(kMembers, member);
        return at == std::end(kMembers) ? DISPID_UNKNOWN : static_cast<DISPID>(at - kMembers);
    }
    Variant Do(DISPID number, WORD flags, const EventArguments& arguments) override {
        if (FAILED(failure)) return Variant::Failure(failure);
        const std::string member(kMembers[number]);
        if (flags == DISPATCH_PROPERTYGET) return Variant(is[member].get());
        lines.push_back(member + " " + arguments.At(0).Text().value_or(""));
        is[member] = arguments.At(0);
        if (member == "Quit") Fire(DISPID_ONQUIT);
        return {};
    }
};

}  // namespace tamrin::test
