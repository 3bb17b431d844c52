#pragma once

#include <windows.h>

#include <exdisp.h>

#include "explorer/com_double.h"

namespace tamrin::test {

// What a browser's object can do beside what the program uses, all of it refused.
class BareBrowser : public DispatchDouble<IWebBrowser2> {
public:
    STDMETHODIMP GoBack() override { return E_NOTIMPL; }
    STDMETHODIMP GoForward() override { return E_NOTIMPL; }
    STDMETHODIMP GoHome() override { return E_NOTIMPL; }
    STDMETHODIMP GoSearch() override { return E_NOTIMPL; }
    STDMETHODIMP Navigate(BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Refresh() override { return E_NOTIMPL; }
    STDMETHODIMP Refresh2(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Stop() override { return E_NOTIMPL; }
    STDMETHODIMP get_Application(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Parent(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Container(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP get_TopLevelContainer(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_LocationName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_LocationURL(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP ClientToWindow(int*, int*) override { return E_NOTIMPL; }
    STDMETHODIMP PutProperty(BSTR, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP GetProperty(BSTR, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_FullName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Path(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_StatusText(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_StatusText(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP QueryStatusWB(OLECMDID, OLECMDF*) override { return E_NOTIMPL; }
    STDMETHODIMP ExecWB(OLECMDID, OLECMDEXECOPT, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Offline(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Offline(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Silent(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Silent(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsBrowser(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RegisterAsBrowser(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_RegisterAsDropTarget(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_RegisterAsDropTarget(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_TheaterMode(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_TheaterMode(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_Resizable(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Resizable(VARIANT_BOOL) override { return E_NOTIMPL; }
};

}  // namespace tamrin::test
