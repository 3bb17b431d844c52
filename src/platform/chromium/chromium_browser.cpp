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
    const std::string agent = tab_->TopAgent();
    if (agent.empty()) return Document();
    if (!document_ || document_->agent() != agent) {
        document_ = std::make_shared<ChromiumDocument>(tab_, agent);
    }
    return Document(document_);
}

std::optional<ScreenPoint> ChromiumBrowser::ElementScreenPoint(const Element& element) {
    const auto own = std::dynamic_pointer_cast<ChromiumElement>(element.object());
    return own && &own->document().tab() == tab_.get() ? own->ToScreen() : std::nullopt;
}

std::vector<Element> ChromiumBrowser::UnderPointer() {
    return document() ? document_->UnderPointer() : std::vector<Element>();
}

std::uint64_t ChromiumBrowser::Handle() {
    return tab_->Alive() ? static_cast<std::uint64_t>(tab_->window()) : 0;
}

void ChromiumBrowser::DeliverEvents() {
    if (telling_) return;
    telling_ = true;
    while (const Notice* notice = tab_->NextNotice()) Tell(*notice);
    telling_ = false;
}

void ChromiumBrowser::Tell(const Notice& notice) {
    subscribers_.ForEach([&](BrowserEvents& events) {
        switch (notice.kind) {
            case Notice::Kind::kComplete:
                return events.DocumentComplete(notice.top);
            case Notice::Kind::kBeforeNavigate:
                return events.BeforeNavigate2(notice.url);
            case Notice::Kind::kNavigated:
                return events.NavigateComplete2();
            case Notice::Kind::kError:
                return events.NavigateError(notice.url, notice.reason);
            case Notice::Kind::kNotResponding:
                return events.NotResponding();
            case Notice::Kind::kQuit:
                return events.OnQuit();
            default:
                return;
        }
    });
    tab_->Tell(notice);
}

}  // namespace tamrin
