#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <map>
#include <vector>

#include "explorer/com_double.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin::test {

// The sinks that listen to one event interface of an object.
class EventSource {
public:
    explicit EventSource(const IID& interface_id) : interface_id_(interface_id) {}

    const IID& interface_id() const { return interface_id_; }
    bool empty() const { return sinks_.empty(); }

    HRESULT Advise(IUnknown* sink, DWORD* cookie) {
        ComPtr<IDispatch> events;
        // The browser asks a sink for the event interface itself, not just for any of names.
        const HRESULT asked =
            sink->QueryInterface(interface_id_, reinterpret_cast<void**>(events.Out()));
        if (FAILED(asked)) return CONNECT_E_CANNOTCONNECT;
        *cookie = ++last_;
        sinks_.emplace(*cookie, std::move(events));
        return S_OK;
    }
    HRESULT Unadvise(DWORD cookie) {
        return sinks_.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
    }

    // Tells an event, its last argument first. False when a listener vetoed what follows.
    bool Fire(DISPID event, std::vector<VARIANT> reversed) const {
        bool goes_on = true;
        const auto sinks = sinks_;
        for (const auto& [cookie, sink] : sinks) {
            DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
            VARIANT answer{};
            sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                         &answer, nullptr, nullptr);
            if (answer.vt == VT_BOOL && answer.boolVal == VARIANT_FALSE) goes_on = false;
            VariantClear(&answer);
        }
        return goes_on;
    }

private:
    const IID interface_id_;
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD last_ = 0;
};

// Where sinks are given to a source. Keeps the object that has it.
class ConnectionPointDouble : public ComDouble<IConnectionPoint> {
public:
    ConnectionPointDouble(IUnknown* owner, EventSource& source) : owner_(owner), source_(source) {}

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (id == IID_IUnknown || id == IID_IConnectionPoint)
            return Give<IConnectionPoint>(this, object);
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP GetConnectionInterface(IID* id) override {
        *id = source_.interface_id();
        return S_OK;
    }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override {
        return source_.Advise(sink, cookie);
    }
    STDMETHODIMP Unadvise(DWORD cookie) override { return source_.Unadvise(cookie); }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

private:
    ComPtr<IUnknown> owner_;
    EventSource& source_;
};

// An object that fires the events of one interface.
class EventContainer : public IConnectionPointContainer {
public:
    explicit EventContainer(const IID& interface_id) : source_(interface_id) {}
    virtual ~EventContainer() = default;

    EventSource& source() { return source_; }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        *point = nullptr;
        if (id != source_.interface_id()) return CONNECT_E_NOCONNECTION;
        *point = new ConnectionPointDouble(this, source_);
        (*point)->AddRef();
        return S_OK;
    }

private:
    EventSource source_;
};

}  // namespace tamrin::test
