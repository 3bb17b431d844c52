#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin {

// Where the windows come from; tests give their own.
struct ExplorerSources {
    // The browsers' windows in the order of the shell's list.
    std::function<std::vector<ComPtr<IWebBrowser2>>()> browsers;
    // The visible windows, the front one first.
    std::function<std::vector<HWND>()> z_order;
    // Makes a browser; null, with the failure, when it cannot be had.
    std::function<ComPtr<IWebBrowser2>(HRESULT& failure)> create;
};

// This machine's own.
ExplorerSources SystemSources(ComCalls& calls);

// The windows of Internet Explorer that the user has open. It keeps none of them itself: a window
// is the same object for as long as the program keeps it.
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
    std::vector<ComPtr<IWebBrowser2>> InOrder();
    std::shared_ptr<Browser> Known(ComPtr<IWebBrowser2> browser);
    bool HasFocus(IWebBrowser2& browser);

    ComCalls& calls_;
    ExplorerSources sources_;
    std::vector<std::weak_ptr<ExplorerBrowser>> known_;
};

}  // namespace tamrin
