#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/explorer/explorer_browser.h"
#include "platform/explorer/screen_windows.h"

namespace tamrin {

// Where browser windows come from. Tests give their own.
struct ExplorerSources {
    // The browsers in the order of the shell's list.
    std::function<std::vector<DispatchObject>()> browsers;
    // The visible windows, the front one first.
    std::function<std::vector<HWND>()> z_order;
    // Makes a browser. On failure null, and `failure` is the error.
    std::function<ComPtr<IDispatch>(HRESULT& failure)> create;
    // The content windows inside these top-level windows, also those that the shell does not list.
    std::function<std::vector<ContentWindow>(const std::vector<HWND>& screen)> contents = nullptr;
    // Makes one of middle integrity, which does without the browser's protected mode.
    std::function<ComPtr<IDispatch>(HRESULT& failure)> create_medium = nullptr;
    // Whether to try `create_medium` first; shared by all copies of these sources.
    std::shared_ptr<bool> medium = std::make_shared<bool>(false);
};

// This machine's own.
ExplorerSources SystemSources(ComCalls& calls);

// The user's windows of Internet Explorer, and the pages that Edge shows in Internet Explorer mode.
// It holds none of them itself; a window is represented by the same object for as long as somebody
// holds it.
class ExplorerWindows : public BrowserWindows {
public:
    ExplorerWindows(ComCalls& calls, ExplorerSources sources)
        : calls_(calls), sources_(std::move(sources)) {}

    std::vector<std::shared_ptr<Browser>> Visible() override;
    std::shared_ptr<Browser> Focused() override;
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override;

    // Makes a window, empty and not visible yet. On failure null, and `why` says in Japanese what
    // to do.
    std::shared_ptr<ExplorerBrowser> Create(std::string& why);

    // Delivers the events of the windows that somebody holds. To be called by Clock::DoEvents.
    void DeliverEvents();

private:
    // A window as it was found.
    struct Entry {
        HWND frame = nullptr;
        DispatchObject browser{};
        std::shared_ptr<ExplorerWindow> window{};  // when there is no browser object
    };
    std::vector<Entry> InOrder();
    // Adds the windows that the shell does not list.
    void AddContents(const std::vector<ContentWindow>& contents, std::vector<Entry>& entries);
    std::shared_ptr<ExplorerWindow> OfContent(const ContentWindow& found);
    std::shared_ptr<Browser> Known(Entry entry);
    std::shared_ptr<ExplorerWindow> Find(IUnknown* browser);
    bool HasFocus(const Entry& entry);

    ComCalls& calls_;
    ExplorerSources sources_;
    std::vector<std::weak_ptr<ExplorerWindow>> known_;
};

}  // namespace tamrin
