#include "explorer/browser_double.h"

namespace tamrin::test {

void BrowserDouble::Fire(DISPID event, std::string_view url, IDispatch* sender, int code) {
    const Variant address(url), status(code), from(sender ? sender : this);
    VARIANT text = address.get(), number = status.get(), none{};
    const auto by_reference = [](VARIANT& value) {
        VARIANT reference{};
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &value;
        return reference;
    };
    events_->Fire(event, {by_reference(number), none, by_reference(text), from.get()});
}

bool BrowserDouble::IsReleased() {
    AddRef();
    return Release() == 1 && events_->empty();
}

STDMETHODIMP BrowserDouble::QueryInterface(REFIID id, void** object) {
    *object = nullptr;
    if (id == IID_IConnectionPointContainer) {
        *object = static_cast<IConnectionPointContainer*>(this);
    } else if (id == IID_IUnknown || id == IID_IDispatch || id == IID_IWebBrowser2) {
        *object = static_cast<IWebBrowser2*>(this);
    }
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP BrowserDouble::get_Document(IDispatch** answer) {
    const HRESULT result = Give(answer, page.get());
    if (*answer) (*answer)->AddRef();
    return FAILED(result) || *answer ? result : S_FALSE;
}

}  // namespace tamrin::test
