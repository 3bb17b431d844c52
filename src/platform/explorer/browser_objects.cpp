#include "platform/explorer/browser_objects.h"

#include <mshtml.h>
#include <oleacc.h>
#include <servprov.h>

#include <bit>
#include <string>
#include <utility>

#include "platform/explorer/variant.h"
#include "platform/text.h"

namespace tamrin {

std::vector<DispatchObject> ShellList::Browsers() {
    std::vector<DispatchObject> browsers;
    if (!windows_) {
        const HRESULT made =
            CoCreateInstance(CLSID_ShellWindows, nullptr, CLSCTX_ALL, IID_IShellWindows,
                             reinterpret_cast<void**>(windows_.Out()));
        if (!calls_.Note(made, "make", "shell", "ShellWindows")) return browsers;
    }
    LONG count = 0;
    const HRESULT counted = windows_->get_Count(&count);
    if (!calls_.Note(counted, "get", "shell", "Count")) {
        if (IsDisconnected(counted)) windows_ = nullptr;
        return browsers;
    }
    for (LONG i = 0; i < count; ++i) {
        ComPtr<IDispatch> entry;
        const Variant index(static_cast<int>(i));
        // A window that has just been closed leaves an empty place.
        calls_.Note(windows_->Item(index.get(), entry.Out()), "call", "shell", "Item");
        DispatchObject browser(std::move(entry), type_);
        if (IsIeWindow(browser)) browsers.push_back(std::move(browser));
    }
    return browsers;
}

DispatchObject BrowserObject(ComCalls& calls, ComPtr<IDispatch> browser) {
    return {std::move(browser), std::make_shared<ObjectType>(calls, "browser")};
}

bool IsIeWindow(const DispatchObject& entry) {
    const std::string name = entry.Text("Name");
    return EqualsIgnoreCase(name, "Windows Internet Explorer") ||
           EqualsIgnoreCase(name, "Internet Explorer");
}

HWND FrameOf(const DispatchObject& browser) {
    const auto number = static_cast<LONG_PTR>(browser.Get("HWND").Number().value_or(0));
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the browser gives its handle
    return reinterpret_cast<HWND>(number);
}

DispatchObject BrowserServedBy(const DispatchObject& window) {
    if (!window) return {};
    ComCalls& calls = window.type()->calls();
    const auto provider = window.object().As<IServiceProvider>();
    if (!calls.Note(provider ? S_OK : E_NOINTERFACE, "ask", "window", "IServiceProvider"))
        return {};
    ComPtr<IDispatch> browser;
    const HRESULT served = provider->QueryService(IID_IWebBrowserApp, IID_IWebBrowser2,
                                                  reinterpret_cast<void**>(browser.Out()));
    calls.Note(served, "call", "window", "QueryService");
    return BrowserObject(calls, std::move(browser));
}

ComPtr<IDispatch> GetDocumentFromWindow(ComCalls& calls, HWND window) {
    static const UINT ask = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
    DWORD_PTR given = 0;
    const LRESULT answered = SendMessageTimeoutW(window, ask, 0, 0, SMTO_ABORTIFHUNG,
                                                 calls.Longest(calls.limits().window_ms), &given);
    const bool has = answered != 0 && given != 0;
    if (!calls.Note(has ? S_OK : E_FAIL, "send", "window", "WM_HTML_GETOBJECT")) return nullptr;
    // Loaded by hand: a library of this name beside the program must not come in its place.
    static const HMODULE library =
        LoadLibraryExW(L"oleacc.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    static const auto object_from_lresult =
        std::bit_cast<decltype(&ObjectFromLresult)>(GetProcAddress(library, "ObjectFromLresult"));
    ComPtr<IHTMLDocument> document;
    const HRESULT made = object_from_lresult
                             ? object_from_lresult(static_cast<LRESULT>(given), IID_IHTMLDocument,
                                                   0, reinterpret_cast<void**>(document.Out()))
                             : E_NOTIMPL;
    calls.Note(made, "call", "window", "ObjectFromLresult");
    return document.As<IDispatch>();
}

}  // namespace tamrin
