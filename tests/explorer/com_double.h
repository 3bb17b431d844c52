#pragma once

#include <windows.h>

#include <ocidl.h>
#include <servprov.h>

#include <map>
#include <vector>

#include "platform/explorer/com_object.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// Which call of the browser's objects fails, counted over all of them.
struct Faults {
    int calls = 0;
    int failing = -1;  // none
    HRESULT how = S_OK;

    // How the call that is being made is to end; S_OK for as usual.
    HRESULT Next() { return calls++ == failing ? how : S_OK; }
};

// The subscriptions to one event interface of an object.
class EventSource : public ComObject<IConnectionPoint> {
public:
    EventSource(Faults& faults, const IID& interface_id)
        : faults_(faults), interface_id_(interface_id) {}

    bool empty() const { return sinks_.empty(); }

    STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
        if (const HRESULT fault = faults_.Next(); FAILED(fault)) return fault;
        *cookie = ++last_;
        // The browser asks for the event interface itself, not for IDispatch.
        return sink->QueryInterface(interface_id_, reinterpret_cast<void**>(sinks_[*cookie].Out()));
    }
    STDMETHODIMP Unadvise(DWORD cookie) override {
        return sinks_.erase(cookie) == 1 ? S_OK : E_FAIL;
    }

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

private:
    Faults& faults_;
    const IID interface_id_;
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD last_ = 0;
};

// An object of the browser, with events and services. Those that somebody holds are counted.
template <typename Interface>
class ObjectDouble : public ComObject<Interface>,
                     public IConnectionPointContainer,
                     public IServiceProvider {
public:
    explicit ObjectDouble(Faults& faults) : faults_(faults) { ++alive; }
    ~ObjectDouble() override { --alive; }
    static inline int alive = 0;

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IConnectionPointContainer) {
            *object = static_cast<IConnectionPointContainer*>(this);
        } else if (id == IID_IServiceProvider) {
            *object = static_cast<IServiceProvider*>(this);
        } else {
            return ComObject<Interface>::QueryInterface(id, object);
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ComObject<Interface>::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return ComObject<Interface>::Release(); }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                        UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        EventSource* const source = SUCCEEDED(faults_.Next()) ? Source(id) : nullptr;
        if (source) source->AddRef();
        *point = source;
        return source ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP QueryService(REFGUID, REFIID, void**) override { return E_NOINTERFACE; }

protected:
    bool Knows(REFIID id) const override {
        return id == IID_IDispatch || id == __uuidof(Interface);
    }
    // Null when it does not have these events.
    virtual EventSource* Source(REFIID id) = 0;

    Faults& faults_;
};

}  // namespace tamrin::test
