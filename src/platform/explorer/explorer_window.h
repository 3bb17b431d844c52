#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/browser.h"
#include "platform/explorer/com_calls.h"
#include "platform/explorer/page_pool.h"
#include "platform/subscribers.h"

namespace tamrin {

class ExplorerDocument;

// A window of this back end: what is the same whether it is reached through a browser object
// (ExplorerBrowser) or only through the window of its page (ContentBrowser).
class ExplorerWindow : public Browser {
public:
    ~ExplorerWindow() override;
    ExplorerWindow(const ExplorerWindow&) = delete;
    ExplorerWindow& operator=(const ExplorerWindow&) = delete;

    Document document() override;
    void SetForeground() override;
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::vector<Element> UnderPointer() override;

    // Calls the subscribers of the window and its pages with the events since the last time.
    virtual void DeliverEvents() { pages_->events().Deliver(); }

    // Whether this is the window of that browser object.
    virtual bool Is(IUnknown* browser) const = 0;

    // The content window by which this was found; null when the shell lists it.
    virtual HWND found_by() const = 0;

protected:
    explicit ExplorerWindow(ComCalls& calls);

    // The page that is shown now; null for none.
    virtual std::shared_ptr<ExplorerDocument> Page() = 0;
    // The top-level window, and the window inside it that shows the page; null when it is gone.
    virtual HWND Frame() = 0;
    virtual HWND Content() = 0;

    // Queues a call of all subscribers.
    void Notify(std::function<void(BrowserEvents&)> call);

    ComCalls& calls_;
    const std::shared_ptr<PagePool> pages_;
    // Shared with the queued events, which can outlive the window.
    const std::shared_ptr<Subscribers<BrowserEvents>> subscribers_;
};

}  // namespace tamrin
