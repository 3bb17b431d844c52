#include "platform/chromium/chromium_browser.h"

#include "platform/chromium/address.h"
#include "platform/chromium/chromium_element.h"

namespace tamrin {

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

std::uint64_t ChromiumBrowser::Handle() {
    return tab_->Alive() ? static_cast<std::uint64_t>(tab_->window()) : 0;
}

void ChromiumBrowser::DeliverEvents() {
    while (const auto notice = tab_->NextNotice()) Tell(*notice);
}

void ChromiumBrowser::Tell(const Tab::Notice& notice) {
    subscribers_.ForEach([&](BrowserEvents& events) {
        switch (notice.kind) {
            case Tab::Notice::Kind::kComplete:
                events.DocumentComplete(notice.top);
                break;
            case Tab::Notice::Kind::kBeforeNavigate:
                events.BeforeNavigate2(notice.url);
                break;
            case Tab::Notice::Kind::kError:
                events.NavigateError(notice.url, notice.reason);
                break;
            case Tab::Notice::Kind::kNotResponding:
                events.NotResponding();
                break;
            case Tab::Notice::Kind::kQuit:
                events.OnQuit();
                break;
        }
    });
}

}  // namespace tamrin
