#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <map>
#include <vector>

#include "platform/explorer/com_object.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// Which call of the browser's objects fails, counted over all of them.
struct Faults {
    int calls = 0;
    int failing = -1;  // none
    bool all_after = false;
    HRESULT how = S_OK;

    // How the call that is being made is to end; S_OK for as usual.
    HRESULT Next() {
        const int call = calls++;
        const bool fails = failing >= 0 && (all_after ? call >= failing : call == failing);
        return fails ? how : S_OK;
    }
};

// An object of the browser; those that somebody holds are counted.
template <typename Interface>
class DispatchDouble : public ComObject<Interface> {
public:
    DispatchDouble() { ++alive; }
    ~DispatchDouble() override { --alive; }
    static inline int alive = 0;

    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
};

// The subscriptions to one event interface of an object.
class EventSource : public ComObject<IConnectionPoint> {
public:
    EventSource(Faults& faults, const IID& interface_id)
        : faults_(faults), interface_id_(interface_id) {}

    const IID& interface_id() const { return interface_id_; }
    bool empty() const { return sinks_.empty(); }

    STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
        if (const HRESULT fault = faults_.Next(); FAILED(fault)) return fault;
        ComPtr<IDispatch> events;
        // The browser asks for the event interface itself, not for IDispatch.
        if (FAILED(sink->QueryInterface(interface_id_, reinterpret_cast<void**>(events.Out()))))
            return CONNECT_E_CANNOTCONNECT;
        *cookie = ++last_;
        sinks_.emplace(*cookie, std::move(events));
        return S_OK;
    }
    STDMETHODIMP Unadvise(DWORD cookie) override {
        return sinks_.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
    }

    // Fires an event; its arguments are in reverse order. False when a sink vetoed what follows.
    bool Fire(DISPID event, std::vector<VARIANT> reversed) const {
        bool goes_on = true;
        const auto sinks = sinks_;
        for (const auto& [cookie, sink] : sinks) {
            DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
            VARIANT answer{};
            sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                         &answer, nullptr, nullptr);
            if (answer.vt != VT_BOOL || answer.boolVal != VARIANT_TRUE) goes_on = false;
        }
        return goes_on;
    }

private:
    Faults& faults_;
    const IID interface_id_;
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD last_ = 0;
};

// What an object with events adds to its class: it gives out its event source.
class EventContainer : public IConnectionPointContainer {
public:
    virtual ~EventContainer() = default;
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        EventSource* const source = Source(id);
        *point = source;
        if (source) source->AddRef();
        return source ? S_OK : CONNECT_E_NOCONNECTION;
    }

protected:
    // Null when it does not have these events.
    virtual EventSource* Source(REFIID id) = 0;
};

}  // namespace tamrin::test
