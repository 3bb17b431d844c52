#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/explorer/explorer_browser.h"
#include "platform/explorer/window_document.h"

namespace tamrin {

// Where the windows come from; tests give their own.
struct ExplorerSources {
    // The browsers' windows in the order of the shell's list.
    std::function<std::vector<ComPtr<IWebBrowser2>>()> browsers;
    // The visible windows, the front one first.
    std::function<std::vector<HWND>()> z_order;
    // Makes a browser; null, with the failure, when it cannot be had.
    std::function<ComPtr<IWebBrowser2>(HRESULT& failure)> create;
    // The content windows on the screen, also of pages that the shell does not list.
    std::function<std::vector<ContentWindow>(const std::vector<HWND>& screen)> contents = nullptr;
    // The same as `create`, of middle integrity: without the browser's protected mode.
    std::function<ComPtr<IWebBrowser2>(HRESULT& failure)> create_medium = nullptr;
    // Whether that one is to be made first, for all who have these sources.
    std::shared_ptr<bool> medium = std::make_shared<bool>(false);
};

// This machine's own.
ExplorerSources SystemSources(ComCalls& calls);

// The windows of Internet Explorer that the user has open, and the pages that Edge shows in its
// mode. Of the shell's it keeps none itself: a window is the same object for as long as the program
// keeps it.
class ExplorerWindows : public BrowserWindows {
public:
    ExplorerWindows(ComCalls& calls, ExplorerSources sources)
        : calls_(calls), sources_(std::move(sources)) {}

    std::vector<std::shared_ptr<Browser>> Visible() override;
    std::shared_ptr<Browser> Focused() override;
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override;

    // Tells what the windows that the program keeps have told. To be called by Clock::DoEvents.
    void DeliverEvents();

private:
    // A window as it was found.
    struct Entry {
        HWND frame = nullptr;
        ComPtr<IWebBrowser2> browser{};
        std::shared_ptr<ExplorerWindow> window{};  // where there is no browser
    };
    std::vector<Entry> InOrder();
    // Adds the windows that only their content windows tell of.
    void AddContents(const std::vector<HWND>& screen, std::vector<Entry>& entries);
    std::shared_ptr<ExplorerWindow> OfContent(const ContentWindow& found);
    std::shared_ptr<Browser> Known(Entry entry);
    std::shared_ptr<ExplorerWindow> Find(IUnknown* browser);
    bool HasFocus(const Entry& entry);

    ComCalls& calls_;
    ExplorerSources sources_;
    std::vector<std::weak_ptr<ExplorerWindow>> known_;
};

}  // namespace tamrin
