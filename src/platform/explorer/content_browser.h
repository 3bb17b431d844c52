#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/explorer/explorer_window.h"
#include "platform/explorer/screen_windows.h"

namespace tamrin {

// A page that is reached only through its content window, such as one that Edge shows in Internet
// Explorer mode. No browser object has events, so it polls which page its window shows. The frame
// around it belongs to another program: it is only moved and closed as a user would.
class ContentBrowser : public ExplorerWindow {
public:
    ContentBrowser(ComCalls& calls, ContentWindow window);
    ~ContentBrowser() override;
    ContentBrowser(const ContentBrowser&) = delete;
    ContentBrowser& operator=(const ContentBrowser&) = delete;

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override;
    int ReadyState() override;
    bool Alive() override;
    void SetVisible(bool) override {}
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars&) override {}
    WindowState State() override;
    std::uint64_t Handle() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    void DeliverEvents() override;
    bool Is(IUnknown*) const override { return false; }
    HWND found_by() const override { return window_.content; }

private:
    // Asks which page is shown, at most five times a second.
    void Look();
    void Show(std::shared_ptr<ExplorerDocument> page);
    int PageState();
    std::shared_ptr<ExplorerDocument> Page() override;
    HWND Frame() override { return window_.frame; }
    HWND Content() override;

    const ContentWindow window_;
    std::shared_ptr<ExplorerDocument> page_;
    std::uint64_t look_again_at_ = 0;
    bool complete_ = false;  // and the subscribers know
    bool gone_ = false;
};

}  // namespace tamrin
