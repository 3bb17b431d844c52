#include "platform/explorer/explorer_windows.h"

#include <algorithm>
#include <map>

#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/explorer/shell_list.h"

namespace tamrin {
namespace {

HWND WindowOf(ComCalls& calls, IWebBrowser2& browser) {
    SHANDLE_PTR window = 0;
    calls.Note(browser.get_HWND(&window), "get", "entry", "HWND");
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the browser gives its handle
    return reinterpret_cast<HWND>(window);
}

}  // namespace

ExplorerSources SystemSources(ComCalls& calls) {
    const auto list = std::make_shared<ShellList>(calls);
    const auto create = [](HRESULT& failure) {
        ComPtr<IWebBrowser2> browser;
        failure = CoCreateInstance(CLSID_InternetExplorer, nullptr, CLSCTX_LOCAL_SERVER,
                                   IID_IWebBrowser2, reinterpret_cast<void**>(browser.Out()));
        return browser;
    };
    return {[list] { return list->Browsers(); }, VisibleWindows, create};
}

std::vector<ComPtr<IWebBrowser2>> ExplorerWindows::InOrder() {
    // The tabs of one window stand in one place and stay in the order of the list.
    std::multimap<std::ptrdiff_t, ComPtr<IWebBrowser2>> entries;
    const std::vector<HWND> order = sources_.z_order();
    for (auto& browser : sources_.browsers()) {
        const auto at = std::find(order.begin(), order.end(), WindowOf(calls_, *browser.get()));
        if (at != order.end()) entries.emplace(at - order.begin(), std::move(browser));
    }
    std::vector<ComPtr<IWebBrowser2>> browsers;
    browsers.reserve(entries.size());
    for (auto& [place, browser] : entries) browsers.push_back(std::move(browser));
    return browsers;
}

std::vector<std::shared_ptr<Browser>> ExplorerWindows::Visible() {
    std::vector<std::shared_ptr<Browser>> windows;
    auto browsers = InOrder();
    windows.reserve(browsers.size());
    for (auto& browser : browsers) windows.push_back(Known(std::move(browser)));
    return windows;
}

std::shared_ptr<Browser> ExplorerWindows::Focused() {
    for (auto& browser : InOrder()) {
        if (HasFocus(*browser.get())) return Known(std::move(browser));
    }
    return nullptr;
}

bool ExplorerWindows::HasFocus(IWebBrowser2& browser) {
    ComPtr<IDispatch> document;
    if (!calls_.Note(browser.get_Document(document.Out()), "get", "entry", "Document"))
        return false;
    const DispatchObject page(std::move(document),
                              std::make_shared<ObjectType>(calls_, "document"));
    return page.Call("hasFocus").Truth();
}

std::shared_ptr<Browser> ExplorerWindows::Open(const std::string& address, std::string& why) {
    auto browser = CreateExplorer(calls_, sources_, why);
    if (!browser) return nullptr;
    browser->SetVisible(true);
    browser->Navigate(address.empty() ? "about:blank" : address);
    known_.push_back(browser);
    return browser;
}

std::shared_ptr<Browser> ExplorerWindows::Known(ComPtr<IWebBrowser2> browser) {
    std::erase_if(known_, [](const auto& window) { return window.expired(); });
    for (const auto& known : known_) {
        auto window = known.lock();
        if (window && window->Is(browser.get())) return window;
    }
    auto window = std::make_shared<ExplorerBrowser>(calls_, std::move(browser));
    known_.push_back(window);
    return window;
}

void ExplorerWindows::DeliverEvents() {
    const auto known = known_;
    for (const auto& window : known) {
        if (const auto browser = window.lock()) browser->DeliverEvents();
    }
}

}  // namespace tamrin
