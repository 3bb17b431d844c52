#include "support/scripted_browser.h"

namespace tamrin::test {

ScriptedWeb::ScriptedWeb(VirtualClock& clock) : clock_(clock) {
    clock.AddSource([this] { Deliver(); });
}

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

void ScriptedWeb::Note(const std::string& call) {
    calls.push_back(call);
    const auto found = on_call.find(call);
    if (found == on_call.end()) return;
    const auto action = found->second;  // which may change the table
    action();
}

void ScriptedWeb::Deliver() {
    if (delivering_) return;
    delivering_ = true;
    for (; !queue_.empty(); queue_.pop_front()) queue_.front()();
    delivering_ = false;
}

Document MakeDocument(ScriptedWeb& web, const std::string& address) {
    return Document(ScriptedPage::Load(web, address));
}

bool ScriptedBrowser::Navigate(const std::string& address) {
    if (!alive_) return false;
    web_.Note("navigate " + address);
    Load(address);
    return true;
}

void ScriptedBrowser::Load(const std::string& address) {
    ++loading_;
    const auto loaded = [self = shared_from_this(), address] {
        --self->loading_;
        self->Show(address);
        const bool found = self->page_ != nullptr;
        self->Tell([=](BrowserEvents& e) {
            found ? e.DocumentComplete(true) : e.NavigateError(address, "no page");
        });
    };
    web_.clock().At(web_.clock().Elapsed() + static_cast<std::uint64_t>(web_.load_ms), loaded);
}

void ScriptedBrowser::Tell(std::function<void(BrowserEvents&)> event) {
    web_.Queue([self = shared_from_this(), event = std::move(event)] {
        self->subscribers_.ForEach(event);
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
        path.push_back(at->MakeElement(node));
        at = node->IsFrame() ? at->FramePage(*node) : nullptr;
    }
    return path;
}

}  // namespace tamrin::test
