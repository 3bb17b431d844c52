#include "support/scripted_browser.h"

#include <algorithm>

namespace tamrin::test {
std::shared_ptr<Browser> ScriptedWeb::Create(std::string& why) {
    why = refusal;
    if (!refusal.empty()) return nullptr;
    auto made = std::make_shared<ScriptedBrowser>(*this);
    browser = made.get();
    Note("create");
    return made;
}

void ScriptedWeb::SetCursorPos(ScreenPoint point) {
    cursor_ = point;
    Note("pointer " + std::to_string(point.x) + "," + std::to_string(point.y));
}

bool ScriptedWeb::SendKeys(const std::vector<KeyStroke>& keys) {
    std::string call = "keys";
    for (const KeyStroke& key : keys) call += " " + key.text + key.name;
    Note(call);
    return takes_keys;
}

ScriptedWeb::ScriptedWeb(VirtualClock& clock) : clock_(clock) {
    clock.AddSource([this] { Deliver(); });
}

void ScriptedWeb::Deliver() {
    if (delivering_) return;
    delivering_ = true;
    while (!queue_.empty()) {
        const auto event = std::move(queue_.front());
        queue_.pop_front();
        event();
    }
    delivering_ = false;
}

void ScriptedWeb::Note(const std::string& call) {
    calls.push_back(call);
    const auto found = on_call.find(call);
    if (found == on_call.end()) return;
    const auto action = found->second;  // which may change the table
    action();
}

class ScriptedBrowser::Subscription : public Connection {
public:
    Subscription(std::shared_ptr<ScriptedBrowser> browser, BrowserEvents& events)
        : browser_(std::move(browser)), events_(&events) {
        browser_->subscribers_.push_back(events_);
    }
    ~Subscription() override { std::erase(browser_->subscribers_, events_); }

private:
    std::shared_ptr<ScriptedBrowser> browser_;
    BrowserEvents* events_;
};

void ScriptedBrowser::Show(const std::string& address) {
    page_ = ScriptedPage::Load(web_, address);
}

Document ScriptedBrowser::document() {
    return alive_ && page_ ? page_->MakeDocument() : Document();
}

void ScriptedBrowser::Tell(std::function<void(BrowserEvents&)> event) {
    const auto self = shared_from_this();
    web_.Queue([self, event = std::move(event)] {
        for (BrowserEvents* events : std::vector<BrowserEvents*>(self->subscribers_)) {
            event(*events);
        }
    });
}

bool ScriptedBrowser::Navigate(const std::string& address) {
    if (!alive_) return false;
    web_.Note("navigate " + address);
    Load(address);
    return true;
}

void ScriptedBrowser::Load(const std::string& address) {
    ++loading_;
    const auto self = shared_from_this();
    web_.clock().At(
        web_.clock().Elapsed() + static_cast<std::uint64_t>(web_.load_ms), [self, address] {
            --self->loading_;
            self->Show(address);
            if (self->page_) {
                self->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
            } else {
                self->Tell([=](BrowserEvents& e) { e.NavigateError(address, "no page"); });
            }
        });
}

void ScriptedBrowser::Quit() {
    web_.Note("quit");
    alive_ = false;
}

void ScriptedBrowser::Die() {
    alive_ = false;
    if (page_) page_->Leave();
    Tell([](BrowserEvents& e) { e.OnQuit(); });
}

void ScriptedBrowser::SetPlace(const WindowPlace& place) {
    web_.Note("place " + std::to_string(place.left) + "," + std::to_string(place.top) + "," +
              std::to_string(place.width) + "," + std::to_string(place.height));
}

void ScriptedBrowser::SetBars(const WindowBars& bars) {
    std::string call = "bars ";
    for (const bool shown : {bars.tool, bars.menu, bars.address, bars.status}) {
        call += shown ? '1' : '0';
    }
    web_.Note(call);
}

std::optional<ScreenPoint> ScriptedBrowser::ElementScreenPoint(const Element& element) {
    if (!element || !web_.has_screen_points) return std::nullopt;
    return ScreenPoint{100, 100};
}

std::vector<Element> ScriptedBrowser::UnderPointer() {
    ++pointer_questions;
    std::vector<Element> path;
    std::shared_ptr<ScriptedPage> at = alive_ ? page_ : nullptr;
    for (const std::string& name : pointer) {
        Node* const node = at ? at->Find(name) : nullptr;
        if (!node) break;
        path.push_back(at->MakeElement(*node));
        at = path.size() < pointer.size() ? at->FramePage(*node) : nullptr;
    }
    return path;
}

std::unique_ptr<Connection> ScriptedBrowser::Connect(BrowserEvents& events) {
    return std::make_unique<Subscription>(shared_from_this(), events);
}

}  // namespace tamrin::test
