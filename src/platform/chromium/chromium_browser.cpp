#include "platform/chromium/chromium_browser.h"

#include <algorithm>

#include "platform/chromium/address.h"
#include "platform/chromium/chromium_element.h"

namespace tamrin {

class ChromiumBrowser::Subscription : public Connection {
public:
    Subscription(std::shared_ptr<Subscribers> subscribers, BrowserEvents& events)
        : subscribers_(std::move(subscribers)), events_(&events) {
        subscribers_->push_back(events_);
    }
    ~Subscription() override {
        subscribers_->erase(std::find(subscribers_->begin(), subscribers_->end(), events_));
    }

    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;

private:
    std::shared_ptr<Subscribers> subscribers_;
    BrowserEvents* events_;
};

bool ChromiumBrowser::Navigate(const std::string& address) {
    const std::string full = FullAddress(address);
    if (!tab_->Alive() || full.empty()) return false;
    if (const std::string script = ScriptOf(full); !script.empty()) {
        tab_->RunInPage(script);
    } else {
        tab_->Navigate(full);
    }
    return true;
}

void ChromiumBrowser::Quit() { tab_->Close(); }

Document ChromiumBrowser::document() {
    const std::string& agent = tab_->frames().Top().agent;
    if (!tab_->Alive() || agent.empty()) return Document();
    if (!document_ || document_->agent() != agent) {
        document_ = std::make_shared<ChromiumDocument>(tab_, agent);
    }
    return Document(document_);
}

std::optional<ScreenPoint> ChromiumBrowser::ElementScreenPoint(const Element& element) {
    const auto own = std::dynamic_pointer_cast<ChromiumElement>(element.object());
    return own && &own->document().tab() == tab_.get() ? own->ToScreen() : std::nullopt;
}

std::unique_ptr<Connection> ChromiumBrowser::Connect(BrowserEvents& events) {
    return std::make_unique<Subscription>(subscribers_, events);
}

void ChromiumBrowser::DeliverEvents() {
    while (const auto notice = tab_->NextNotice()) Tell(*notice);
}

void ChromiumBrowser::Tell(const Tab::Notice& notice) {
    // A handler may end any subscription, and handle events itself.
    const Subscribers told = *subscribers_;
    for (BrowserEvents* events : told) {
        const Subscribers& now = *subscribers_;
        if (std::find(now.begin(), now.end(), events) == now.end()) continue;
        switch (notice.kind) {
            case Tab::Notice::Kind::kComplete:
                events->DocumentComplete(notice.top);
                break;
            case Tab::Notice::Kind::kBeforeNavigate:
                events->BeforeNavigate2(notice.url);
                break;
            case Tab::Notice::Kind::kError:
                events->NavigateError(notice.url, notice.reason);
                break;
            case Tab::Notice::Kind::kNotResponding:
                events->NotResponding();
                break;
            case Tab::Notice::Kind::kQuit:
                events->OnQuit();
                break;
        }
    }
}

}  // namespace tamrin
