#include "explorer/browser_double.h"

#include <exdispid.h>

#include <algorithm>

namespace tamrin::test {
namespace {

VARIANT ByReference(VARIANT& value) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &value;
    return reference;
}

VARIANT ByReference(VARIANT_BOOL& value) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BOOL;
    reference.pboolVal = &value;
    return reference;
}

VARIANT Of(IDispatch* object) {
    VARIANT value{};
    value.vt = VT_DISPATCH;
    value.pdispVal = object;
    return value;
}

}  // namespace

void BrowserDouble::FireBeforeNavigate2(std::string_view url, IDispatch* frame) {
    const Variant shown(url);
    VARIANT text = shown.get(), none{}, post{}, headers{}, target{}, flags{};
    post.vt = VT_BYREF | VT_VARIANT;
    post.pvarVal = &none;
    VARIANT_BOOL cancel = VARIANT_FALSE;
    source().Fire(250, {ByReference(cancel), ByReference(headers), ByReference(post),
                        ByReference(target), ByReference(flags), ByReference(text),
                        Of(frame ? frame : static_cast<IDispatch*>(this))});
}

void BrowserDouble::FireShown(DISPID event, std::string_view url, IDispatch* frame) {
    const Variant shown(url);
    VARIANT text = shown.get();
    source().Fire(event, {ByReference(text), Of(frame ? frame : static_cast<IDispatch*>(this))});
}

void BrowserDouble::FireNavigateComplete2(std::string_view url, IDispatch* frame) {
    FireShown(252, url, frame);
}

void BrowserDouble::FireDocumentComplete(std::string_view url, IDispatch* frame) {
    FireShown(259, url, frame);
}

void BrowserDouble::FireNavigateError(std::string_view url, long code) {
    const Variant shown(url);
    const Variant number(static_cast<int>(code));
    VARIANT text = shown.get(), code_value = number.get(), target{};
    VARIANT_BOOL cancel = VARIANT_FALSE;
    source().Fire(271, {ByReference(cancel), ByReference(code_value), ByReference(target),
                        ByReference(text), Of(static_cast<IDispatch*>(this))});
}

void BrowserDouble::FireOnQuit() { source().Fire(253, {}); }

STDMETHODIMP BrowserDouble::QueryInterface(REFIID id, void** object) {
    const IID browser[] = {IID_IUnknown, IID_IDispatch, IID_IWebBrowser, IID_IWebBrowserApp,
                           IID_IWebBrowser2};
    if (std::find(std::begin(browser), std::end(browser), id) != std::end(browser))
        return ComDouble::Give<IWebBrowser2>(this, object);
    if (id == IID_IConnectionPointContainer)
        return ComDouble::Give<IConnectionPointContainer>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP BrowserDouble::Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) {
    if (const HRESULT result = Result(); FAILED(result)) return result;
    lines.push_back("Navigate2 " + Variant(*url).Text().value_or(""));
    return S_OK;
}

STDMETHODIMP BrowserDouble::Quit() {
    if (const HRESULT result = Result(); FAILED(result)) return result;
    lines.emplace_back("Quit");
    return S_OK;
}

STDMETHODIMP BrowserDouble::get_Document(IDispatch** answer) {
    *answer = nullptr;
    if (const HRESULT result = Result(); FAILED(result)) return result;
    *answer = page.get();
    if (*answer) (*answer)->AddRef();
    return *answer ? S_OK : S_FALSE;
}

STDMETHODIMP BrowserDouble::get_Busy(VARIANT_BOOL* answer) {
    return Give(answer, busy ? VARIANT_TRUE : VARIANT_FALSE);
}

STDMETHODIMP BrowserDouble::get_ReadyState(READYSTATE* answer) {
    return Give(answer, static_cast<READYSTATE>(ready_state));
}

STDMETHODIMP BrowserDouble::get_Name(BSTR* answer) {
    *answer = nullptr;
    const HRESULT result = Result();
    if (SUCCEEDED(result)) std::swap(*answer, *Bstr(name).Out());
    return result;
}

STDMETHODIMP BrowserDouble::get_HWND(SHANDLE_PTR* answer) {
    return Give(answer, static_cast<SHANDLE_PTR>(reinterpret_cast<std::intptr_t>(window)));
}

}  // namespace tamrin::test
