#include "platform/explorer/served_browser.h"

#include <servprov.h>

namespace tamrin {

ComPtr<IWebBrowser2> BrowserServedBy(ComCalls& calls, IDispatch* window) {
    ComPtr<IWebBrowser2> browser;
    if (!window) return browser;
    const auto provider = ComPtr<IDispatch>(window).As<IServiceProvider>();
    if (!calls.Note(provider ? S_OK : E_NOINTERFACE, "ask", "window", "IServiceProvider"))
        return browser;
    const HRESULT served = provider->QueryService(IID_IWebBrowserApp, IID_IWebBrowser2,
                                                  reinterpret_cast<void**>(browser.Out()));
    calls.Note(served, "call", "window", "QueryService");
    return browser;
}

}  // namespace tamrin
