#pragma once

#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>

#include <string>
#include <string_view>
#include <vector>

#include "explorer/com_double.h"
#include "platform/explorer/variant.h"

namespace tamrin::test {

// A name cannot stand in parentheses. NOLINTBEGIN(bugprone-macro-parentheses)
// Members that the program does not use, five at a time.
#define TAMRIN_UNUSED(A, B, C, D, E)              \
    STDMETHODIMP A override { return E_NOTIMPL; } \
    STDMETHODIMP B override { return E_NOTIMPL; } \
    STDMETHODIMP C override { return E_NOTIMPL; } \
    STDMETHODIMP D override { return E_NOTIMPL; } \
    STDMETHODIMP E override { return E_NOTIMPL; }
// A property that is kept. Setting it is written down: "Left 10".
#define TAMRIN_PROPERTY(Name, T)                                               \
    T Name = 0;                                                                \
    STDMETHODIMP get_##Name(T* answer) override { return Give(answer, Name); } \
    STDMETHODIMP put_##Name(T value) override {                                \
        Name = value;                                                          \
        return Do(#Name, std::to_string(value));                               \
    }

#define TAMRIN_PROPERTIES(T, A, B, C, D) \
    TAMRIN_PROPERTY(A, T)                \
    TAMRIN_PROPERTY(B, T)                \
    TAMRIN_PROPERTY(C, T)                \
    TAMRIN_PROPERTY(D, T)
// NOLINTEND(bugprone-macro-parentheses)

// A browser window, or the browser of a frame. The test says what it shows and fires its events.
class BrowserDouble : public ObjectDouble<IWebBrowser2> {
public:
    explicit BrowserDouble(Faults& faults)
        : ObjectDouble(faults), events_(new EventSource(faults, DIID_DWebBrowserEvents2)) {}

    ComPtr<IDispatch> page;
    std::string name = "Internet Explorer";
    HWND window = nullptr;
    VARIANT_BOOL busy = VARIANT_FALSE;
    // What every call answers from now on, unless it is S_OK.
    HRESULT failure = S_OK;
    // The calls that change something: "Navigate2 http://...", "Left 10", "Visible -1", "Quit ".
    std::vector<std::string> lines;

    // Fires an event of this window, or of the frame whose browser `sender` is.
    void Fire(DISPID event, std::string_view url = {}, IDispatch* sender = nullptr, int code = 0) {
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
    // Whether nobody but its maker holds it, and nobody listens to it.
    bool IsReleased() {
        AddRef();
        return Release() == 1 && events_->empty();
    }

    STDMETHODIMP Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
        return Do("Navigate2", Variant(*url).Text().value_or(""));
    }
    STDMETHODIMP Quit() override { return Do("Quit", ""); }
    STDMETHODIMP get_Document(IDispatch** answer) override {
        const HRESULT result = Give(answer, page.get());
        if (*answer) (*answer)->AddRef();
        return FAILED(result) || *answer ? result : S_FALSE;
    }
    STDMETHODIMP get_Busy(VARIANT_BOOL* answer) override { return Give(answer, busy); }
    STDMETHODIMP get_ReadyState(READYSTATE* answer) override {
        return Give(answer, READYSTATE_COMPLETE);
    }
    STDMETHODIMP get_Name(BSTR* answer) override {
        return Give(answer, SysAllocString(Bstr(name).get()));
    }
    STDMETHODIMP get_HWND(SHANDLE_PTR* answer) override {
        return Give(answer, reinterpret_cast<SHANDLE_PTR>(window));
    }
    TAMRIN_PROPERTY(ToolBar, int)
    TAMRIN_PROPERTIES(LONG, Left, Top, Width, Height)
    TAMRIN_PROPERTIES(VARIANT_BOOL, Visible, MenuBar, AddressBar, StatusBar)
    TAMRIN_PROPERTIES(VARIANT_BOOL, FullScreen, Offline, Silent, TheaterMode)
    TAMRIN_PROPERTY(RegisterAsBrowser, VARIANT_BOOL)
    STDMETHODIMP get_RegisterAsDropTarget(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Resizable(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Resizable(VARIANT_BOOL) override { return E_NOTIMPL; }
    TAMRIN_UNUSED(GoBack(), GoForward(), GoHome(), GoSearch(),
                  Navigate(BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*))
    TAMRIN_UNUSED(Refresh(), Refresh2(VARIANT*), Stop(), get_Application(IDispatch**),
                  get_Parent(IDispatch**))
    TAMRIN_UNUSED(get_Container(IDispatch**), get_TopLevelContainer(VARIANT_BOOL*), get_Type(BSTR*),
                  get_LocationName(BSTR*), get_LocationURL(BSTR*))
    TAMRIN_UNUSED(ClientToWindow(int*, int*), PutProperty(BSTR, VARIANT),
                  GetProperty(BSTR, VARIANT*), get_FullName(BSTR*), get_Path(BSTR*))
    TAMRIN_UNUSED(get_StatusText(BSTR*), put_StatusText(BSTR), QueryStatusWB(OLECMDID, OLECMDF*),
                  ExecWB(OLECMDID, OLECMDEXECOPT, VARIANT*, VARIANT*),
                  ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*))

private:
    EventSource* Source(REFIID) override { return events_.get(); }
    HRESULT Result() {
        const HRESULT fault = faults_.Next();
        return FAILED(fault) ? fault : failure;
    }
    template <typename T>
    HRESULT Give(T* answer, T value) {
        const HRESULT result = Result();
        *answer = SUCCEEDED(result) ? value : T{};
        return result;
    }
    HRESULT Do(const std::string& member, const std::string& value) {
        const HRESULT result = Result();
        if (SUCCEEDED(result)) lines.push_back(member + " " + value);
        return result;
    }

    ComPtr<EventSource> events_;
};

#undef TAMRIN_UNUSED
#undef TAMRIN_PROPERTY
#undef TAMRIN_PROPERTIES

}  // namespace tamrin::test
