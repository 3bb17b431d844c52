#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/chromium/chromium_document.h"
#include "platform/chromium/tab.h"
#include "platform/subscribers.h"

namespace tamrin {

// A window of the browser. It stays with the tab that it was made for; pages that open in new
// windows are not its own.
class ChromiumBrowser : public Browser {
public:
    // `bring_to_front` makes the tab the one that input reaches.
    ChromiumBrowser(std::shared_ptr<Tab> tab, std::function<void()> bring_to_front)
        : tab_(std::move(tab)), bring_to_front_(std::move(bring_to_front)) {}

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override { return tab_->Busy(); }
    int ReadyState() override { return tab_->ReadyState(); }
    bool Alive() override { return tab_->Alive(); }
    bool Closed() override { return tab_->closed(); }
    Document document() override;
    // A window of this browser is always shown.
    void SetVisible(bool /*visible*/) override {}
    void SetPlace(const WindowPlace& place) override { tab_->SetPlace(place); }
    // Its bars are fixed.
    void SetBars(const WindowBars& /*bars*/) override {}
    void SetForeground() override { bring_to_front_(); }
    WindowState State() override { return tab_->State(); }
    // The browser's own number for the window; it does not know the system's handle.
    std::uint64_t Handle() override;
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    // One round trip, and one more for each frame that the pointer is in.
    std::vector<Element> UnderPointer() override;
    bool AllDelivered() override { return tab_->AllDelivered(); }
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override {
        return subscribers_.Connect(events);
    }

    // Calls the subscribers of the window and its pages with what has happened since the last time.
    // Does nothing while one of them is being called.
    void DeliverEvents();

private:
    void Deliver(const Notice& notice);

    std::shared_ptr<Tab> tab_;
    std::function<void()> bring_to_front_;
    std::shared_ptr<ChromiumDocument> document_;  // of the last answer
    Subscribers<BrowserEvents> subscribers_;
    bool delivering_ = false;
};

}  // namespace tamrin
