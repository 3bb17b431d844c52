#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/explorer_window.h"
#include "platform/explorer/page_pool.h"
#include "platform/explorer/window_document.h"
#include "platform/subscribers.h"

namespace tamrin {

class ExplorerDocument;

// A page that is reached through its content window alone, such as one that Edge shows in the mode
// of Internet Explorer: no browser object tells of it. So its window is asked now and then what it
// shows, and the frame around it is left to its own program: it is moved and closed as by its user.
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
    Document document() override;
    void SetVisible(bool) override {}
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars&) override {}
    WindowState State() override;
    std::uint64_t Handle() override;
    void SetForeground() override;
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::vector<Element> UnderPointer() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    void DeliverEvents() override;
    bool Is(IUnknown*) const override { return false; }
    HWND content() const override { return window_.content; }

private:
    // Asks which page is shown, unless that was done a moment ago.
    void Look();
    void Show(std::shared_ptr<ExplorerDocument> page);
    int PageState();
    void Tell(std::function<void(BrowserEvents&)> call);

    ComCalls& calls_;
    const ContentWindow window_;
    std::shared_ptr<PagePool> pages_;
    std::shared_ptr<Subscribers<BrowserEvents>> subscribers_;
    std::shared_ptr<ExplorerDocument> page_;
    std::uint64_t look_again_at_ = 0;
    bool complete_ = false;  // and told so
    bool gone_ = false;
};

}  // namespace tamrin
