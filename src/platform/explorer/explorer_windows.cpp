#include "platform/explorer/explorer_windows.h"

#include <algorithm>

#include "platform/explorer/browser_objects.h"
#include "platform/explorer/content_browser.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/explorer_launcher.h"

namespace tamrin {
namespace {

// The browser of middle integrity: CLSID_InternetExplorerMedium of newer kits' exdisp.h.
constexpr CLSID kInternetExplorerMedium = {
    0xD5E8041D, 0x920F, 0x45E9, {0xB8, 0xFB, 0xB1, 0xDE, 0xB8, 0x2C, 0x6E, 0x5E}};

// The program looks for windows while it is idle: which there are, and which has the focus. Both
// together stop its own window for a second at most.
constexpr DWORD kAnswerWithinMs = 500;

ComPtr<IDispatch> Make(const CLSID& kind, HRESULT& failure) {
    ComPtr<IWebBrowser2> browser;
    failure = CoCreateInstance(kind, nullptr, CLSCTX_LOCAL_SERVER, IID_IWebBrowser2,
                               reinterpret_cast<void**>(browser.Out()));
    return browser.As<IDispatch>();
}

}  // namespace

ExplorerSources SystemSources(ComCalls& calls) {
    const auto list = std::make_shared<ShellList>(calls);
    return {
        .browsers = [list] { return list->Browsers(); },
        .z_order = VisibleWindows,
        .create = [](HRESULT& failure) { return Make(CLSID_InternetExplorer, failure); },
        .contents = ContentWindows,
        .create_medium = [](HRESULT& failure) { return Make(kInternetExplorerMedium, failure); }};
}

std::vector<ExplorerWindows::Entry> ExplorerWindows::InOrder() {
    const std::vector<HWND> screen = sources_.z_order();
    std::vector<ContentWindow> contents;
    if (sources_.contents) contents = sources_.contents(screen);
    const bool all_answer = std::none_of(contents.begin(), contents.end(),
                                         [](const ContentWindow& found) { return found.hangs; });
    std::vector<Entry> entries;
    // A browser of the list tells its window when it is asked, and one that hangs would be asked,
    // too. While there is one, the others are found by the windows of their pages.
    const auto listed = all_answer ? sources_.browsers() : std::vector<DispatchObject>();
    for (const auto& browser : listed) {
        const HWND frame = FrameOf(browser);
        if (std::find(screen.begin(), screen.end(), frame) != screen.end())
            entries.push_back({.frame = frame, .browser = browser});
    }
    AddContents(contents, entries);
    // The tabs of one window have the same frame and stay in the order of the list.
    std::vector<Entry> ordered;
    ordered.reserve(entries.size());
    for (const HWND frame : screen) {
        for (Entry& entry : entries) {
            if (entry.frame == frame) ordered.push_back(std::move(entry));
        }
    }
    return ordered;
}

void ExplorerWindows::AddContents(const std::vector<ContentWindow>& contents,
                                  std::vector<Entry>& entries) {
    const std::size_t listed = entries.size();
    for (const ContentWindow& found : contents) {
        if (found.hangs) continue;
        const auto same_frame = [&found](const Entry& entry) { return entry.frame == found.frame; };
        if (std::any_of(entries.begin(), entries.end(), same_frame)) continue;
        auto window = OfContent(found);
        const auto same = [&window](const Entry& entry) {
            return window->Is(entry.browser.object().get());
        };
        const auto end = entries.begin() + static_cast<std::ptrdiff_t>(listed);
        if (!window || std::any_of(entries.begin(), end, same)) continue;
        entries.push_back({.frame = found.frame, .window = std::move(window)});
    }
}

std::shared_ptr<ExplorerWindow> ExplorerWindows::OfContent(const ContentWindow& found) {
    for (const auto& known : known_) {
        const auto window = known.lock();
        if (window && window->found_by() == found.content && window->Alive()) return window;
    }
    auto document = GetDocumentFromWindow(calls_, found.content);
    if (!document) return nullptr;
    const auto pool = std::make_shared<PagePool>(calls_);
    const auto page = pool->Page(std::move(document));
    if (!page) return nullptr;
    auto browser = BrowserServedBy(page->Window());
    auto window = browser ? Find(browser.object().get()) : nullptr;
    if (!window && browser)
        window = std::make_shared<ExplorerBrowser>(calls_, std::move(browser), found);
    if (!window) window = std::make_shared<ContentBrowser>(calls_, found);
    return window;
}

std::vector<std::shared_ptr<Browser>> ExplorerWindows::Visible() {
    const CallBudget budget(calls_, kAnswerWithinMs);
    std::vector<std::shared_ptr<Browser>> windows;
    auto entries = InOrder();
    windows.reserve(entries.size());
    for (auto& entry : entries) windows.push_back(Known(std::move(entry)));
    return windows;
}

std::shared_ptr<Browser> ExplorerWindows::Focused() {
    const CallBudget budget(calls_, kAnswerWithinMs);
    for (auto& entry : InOrder()) {
        if (HasFocus(entry)) return Known(std::move(entry));
    }
    return nullptr;
}

bool ExplorerWindows::HasFocus(const Entry& entry) {
    if (entry.window) return entry.window->document().hasFocus();
    const DispatchObject page(entry.browser.Get("Document").Object(),
                              std::make_shared<ObjectType>(calls_, "document"));
    return page.Call("hasFocus").Truth();
}

std::shared_ptr<ExplorerBrowser> ExplorerWindows::Create(std::string& why) {
    auto browser = CreateExplorer(calls_, sources_, why);
    if (browser) known_.push_back(browser);
    return browser;
}

std::shared_ptr<Browser> ExplorerWindows::Open(const std::string& address, std::string& why) {
    auto browser = Create(why);
    if (!browser) return nullptr;
    browser->SetVisible(true);
    browser->Navigate(address.empty() ? "about:blank" : address);
    return browser;
}

std::shared_ptr<ExplorerWindow> ExplorerWindows::Find(IUnknown* browser) {
    for (const auto& known : known_) {
        auto window = known.lock();
        if (window && window->Is(browser)) return window;
    }
    return nullptr;
}

std::shared_ptr<Browser> ExplorerWindows::Known(Entry entry) {
    auto window = entry.window ? std::move(entry.window) : Find(entry.browser.object().get());
    if (!window) window = std::make_shared<ExplorerBrowser>(calls_, std::move(entry.browser));
    const auto same = [&window](const auto& known) { return known.lock() == window; };
    if (std::none_of(known_.begin(), known_.end(), same)) known_.push_back(window);
    return window;
}

void ExplorerWindows::DeliverEvents() {
    std::erase_if(known_, [](const auto& window) { return window.expired(); });
    const auto known = known_;
    for (const auto& window : known) {
        if (const auto browser = window.lock()) browser->DeliverEvents();
    }
}

}  // namespace tamrin
