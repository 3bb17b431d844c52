#pragma once

#include <windows.h>

#include <exdisp.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/explorer_window.h"
#include "platform/explorer/page_pool.h"
#include "platform/explorer/window_document.h"
#include "platform/subscribers.h"

namespace tamrin {

// One window of Internet Explorer, or one tab of it. It keeps the browser only for as long as that
// is there: when it quits or its process ends, everything is given back and all reads are empty.
class ExplorerBrowser : public ExplorerWindow {
public:
    // `found` is the content window by which it was found, if the shell does not list it.
    ExplorerBrowser(ComCalls& calls, ComPtr<IWebBrowser2> browser, ContentWindow found = {});
    ~ExplorerBrowser() override;
    ExplorerBrowser(const ExplorerBrowser&) = delete;
    ExplorerBrowser& operator=(const ExplorerBrowser&) = delete;

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override;
    int ReadyState() override;
    bool Alive() override;
    Document document() override;
    void SetVisible(bool visible) override;
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars& bars) override;
    WindowState State() override;
    std::uint64_t Handle() override;
    void SetForeground() override;
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::vector<Element> UnderPointer() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    // Where to look for the browser that takes the place of this one, given its window. A browser
    // that is led to a page of another security zone gives its window to another process, and the
    // object by which it was made dies.
    using FindSuccessor = std::function<ComPtr<IWebBrowser2>(HWND frame)>;
    void SetSuccessor(FindSuccessor find) { find_successor_ = std::move(find); }

    void DeliverEvents() override { pages_->events().Deliver(); }
    bool Is(IUnknown* browser) const override {
        return browser_ && SameObject(browser_.get(), browser);
    }
    HWND content() const override { return found_.content; }

private:
    // Notes how a call of the browser went; one that shows that the browser is gone lets go of it.
    bool Did(HRESULT result, const char* kind, const char* member);
    // Listens from the first use on; a window that is only looked at is left alone.
    void Listen();
    void NoteNavigation(const EventArguments& arguments);
    void NoteShown(const EventArguments& arguments);
    void NoteComplete(const EventArguments& arguments);
    void NoteError(const EventArguments& arguments);
    // The browser is gone.
    void Lose();
    // The object answers no more: the browser is gone, or on its way into another process.
    void Part();
    // Whether it is still on its way; at the end it is here again, or lost.
    bool Moving();
    void Tell(std::function<void(BrowserEvents&)> call);
    HWND Window();
    HWND Content();
    std::shared_ptr<ExplorerDocument> Page();

    ComCalls& calls_;
    ComPtr<IWebBrowser2> browser_;
    const ContentWindow found_;
    std::shared_ptr<PagePool> pages_;
    std::shared_ptr<Subscribers<BrowserEvents>> subscribers_;
    std::unique_ptr<EventConnection> events_;
    HWND window_ = nullptr;  // at the last time that it was asked for
    // Until when a navigation that was asked for counts as begun although nothing tells of it.
    std::uint64_t begins_until_ = 0;
    FindSuccessor find_successor_;
    std::uint64_t may_move_until_ = 0;
    std::uint64_t moving_until_ = 0;
};

}  // namespace tamrin
