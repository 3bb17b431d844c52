#include "platform/explorer/event_sink.h"

#include <algorithm>

#include "platform/explorer/com_object.h"

namespace tamrin {

Variant EventArguments::At(std::size_t index) const {
    if (index >= parameters_.cArgs) return Variant();
    return Variant(parameters_.rgvarg[parameters_.cArgs - 1 - index]);
}

// The object that the browser calls. The browser may keep it longer than the connection lives.
class EventConnection::Sink : public ComObject<IDispatch> {
public:
    Sink(REFIID interface_id, std::vector<EventHandler> handlers)
        : interface_id_(interface_id), handlers_(std::move(handlers)) {}

    void Close() { handlers_.clear(); }

    // Events come by number; nobody looks up their names.
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* answer,
                        EXCEPINFO*, UINT*) override {
        const auto handler = std::find_if(handlers_.begin(), handlers_.end(),
                                          [event](const auto& h) { return h.event == event; });
        if (handler == handlers_.end() || !parameters) return DISP_E_MEMBERNOTFOUND;
        const ComPtr<Sink> alive(this);
        const auto handle = handler->handle;  // the connection may end meanwhile
        try {
            handle(EventArguments(*parameters));
        } catch (...) {
            // No exception of this program may pass through the browser.
        }
        if (answer) *answer = TrueValue();
        return S_OK;
    }

protected:
    bool Knows(REFIID id) const override { return id == IID_IDispatch || id == interface_id_; }

private:
    static VARIANT TrueValue() {
        VARIANT value{};
        value.vt = VT_BOOL;
        value.boolVal = VARIANT_TRUE;
        return value;
    }

    const IID interface_id_;
    std::vector<EventHandler> handlers_;
};

std::unique_ptr<EventConnection> EventConnection::Make(ComCalls& calls, IUnknown* source,
                                                       REFIID interface_id,
                                                       std::vector<EventHandler> handlers) {
    const auto container = ComPtr<IUnknown>(source).As<IConnectionPointContainer>();
    if (!calls.Note(container ? S_OK : E_NOINTERFACE, "ask", "events", "IConnectionPointContainer"))
        return nullptr;
    ComPtr<IConnectionPoint> point;
    if (!calls.Note(container->FindConnectionPoint(interface_id, point.Out()), "call", "events",
                    "FindConnectionPoint"))
        return nullptr;
    ComPtr<Sink> sink(new Sink(interface_id, std::move(handlers)));
    DWORD cookie = 0;
    if (!calls.Note(point->Advise(sink.get(), &cookie), "call", "events", "Advise")) return nullptr;
    return std::unique_ptr<EventConnection>(
        new EventConnection(calls, std::move(point), cookie, std::move(sink)));
}

EventConnection::EventConnection(ComCalls& calls, ComPtr<IConnectionPoint> point, DWORD cookie,
                                 ComPtr<Sink> sink)
    : calls_(calls), point_(std::move(point)), cookie_(cookie), sink_(std::move(sink)) {}

EventConnection::~EventConnection() {
    sink_->Close();
    calls_.Note(point_->Unadvise(cookie_), "call", "events", "Unadvise");
}

}  // namespace tamrin
