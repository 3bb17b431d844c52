#pragma once

#include <windows.h>

#include <dispex.h>
#include <exdisp.h>
#include <mshtml.h>
#include <servprov.h>

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "explorer/event_source.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/variant.h"

namespace tamrin::test {

class PageObject;

// What the objects of all pages share.
struct PageObjects {
    // The number of a member is the same for all objects, and names are alike in any case.
    std::map<std::wstring, DISPID> numbers;
    std::map<DISPID, std::wstring> names;
    // Those that somebody keeps, by the script's object.
    std::map<IUnknown*, PageObject*> alive;
    // Members that fail: "VALUE" everywhere, or "INPUT.VALUE" of one tag. S_FALSE answers Null.
    std::map<std::wstring, HRESULT> faults;
    // The browser of a window, which it gives as a service.
    std::function<ComPtr<IWebBrowser2>(IDispatch* script_window)> browser_of;
    // Old documents answer Null objects as an object without an address.
    bool null_is_object = false;
    std::uint64_t calls = 0;

    ComPtr<IDispatch> Wrap(IDispatch* script);
    // The same value with the script's objects wrapped, or with the wrapping taken off.
    void WrapValue(VARIANT& value, bool method);
    static ComPtr<IDispatch> Unwrap(IDispatch* object);
    DISPID NumberOf(std::wstring name);
    // Tells an event to those who listen to an object; false for a veto.
    bool Fire(IDispatch* script, DISPID event, IDispatch* script_event);
};

// An object of a page. A script keeps what it knows; the object behaves to the outside as the
// browser's does: the numbers of members hold for all objects, their names in any case. A member X
// is the script's functions "get_X" and "put_X", or else its property X. What stands between bars
// in "__denied" is refused. "__kind" is "document", "form" or "window" for those that can more.
class PageObject : public DispatchDouble<IHTMLDocument>,
                   public EventContainer,
                   public IServiceProvider {
public:
    PageObject(PageObjects& objects, IDispatch* script);
    ~PageObject() override;

    static const IID kId;

    const ComPtr<IDispatchEx>& script() const { return script_; }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return DispatchDouble::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return DispatchDouble::Release(); }

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* number) override;
    STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* answer, EXCEPINFO* exception, UINT*) override;

    STDMETHODIMP get_Script(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP QueryService(REFGUID service, REFIID id, void** object) override;

private:
    static const IID& EventsOf(IDispatch* script);
    std::wstring Property(const wchar_t* name) const;
    // A member by its number in the type library, for the kinds whose pages can hide it.
    std::span<const struct Own> OwnMembers() const;
    DISPID OwnNumber(const std::wstring& name) const;  // 0 for none
    std::wstring OwnName(DISPID number) const;         // "" for none
    bool IsHidden(const std::wstring& name) const;
    bool Has(const std::wstring& name, DISPID* number = nullptr) const;
    // S_OK, or how the member is to fail.
    HRESULT Fault(const std::wstring& name) const;
    HRESULT Run(const std::wstring& name, WORD flags, DISPPARAMS* parameters,
                VARIANT* answer) const;

    PageObjects& objects_;
    ComPtr<IDispatchEx> script_;
    ComPtr<IUnknown> identity_;
};

}  // namespace tamrin::test
