#pragma once

#include <deque>

#include "platform/browser.h"
#include "support/scripted_page.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

// The scripted pages, the browser that shows them, and the mouse and keyboard before it.
class ScriptedWeb : public ScriptedSite, public BrowserLauncher, public Input {
public:
    // Each DoEvents of the clock delivers the queued events: one at a time, also when a handler
    // handles events.
    explicit ScriptedWeb(VirtualClock& its_clock) : clock(its_clock) {
        clock.AddSource([this] {
            if (std::exchange(delivering_, true)) return;
            for (; !events.empty(); events.pop_front()) events.front()();
            delivering_ = false;
        });
    }

    VirtualClock& clock;
    std::uint64_t load_ms = 30;  // how long a page takes to load
    std::string refusal;         // why no browser can be started; "" when one can
    std::optional<ScreenPoint> screen_point{{100, 100}};  // of every element
    bool busy = false;                                    // whether the browser is always busy
    std::shared_ptr<class ScriptedBrowser> browser;       // made last, null before the first
    std::deque<std::function<void()>> events;

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return *this; }

    ScreenPoint GetCursorPos() override { return cursor_; }
    void SetCursorPos(ScreenPoint point) override {
        cursor_ = point;
        Note("pointer " + std::to_string(point.x) + "," + std::to_string(point.y));
    }
    void LeftButton(bool down) override { Note(down ? "button down" : "button up"); }
    bool SendKeys(const std::vector<KeyStroke>& keys) override {
        std::string call = "keys";
        for (const KeyStroke& key : keys) call += " " + key.text + key.name;
        return Note(call);
    }

private:
    bool delivering_ = false;
    ScreenPoint cursor_{3, 4};
};

class ScriptedBrowser : public Browser, public std::enable_shared_from_this<ScriptedBrowser> {
public:
    explicit ScriptedBrowser(ScriptedWeb& web) : web_(web) {}

    bool Navigate(const std::string& address) override {
        web_.Note("navigate " + address);
        Load(address);
        return true;
    }
    void Quit() override {
        web_.Note("quit");
        alive_ = false;
    }
    bool Busy() override { return alive_ && (web_.busy || loading_ > 0); }
    int ReadyState() override { return alive_ && page_ && loading_ == 0 ? 4 : 1; }
    bool Alive() override { return alive_; }
    bool Closed() override { return closed_; }
    Document document() override { return Document(alive_ ? page_ : nullptr); }
    void SetVisible(bool visible) override { web_.Note(visible ? "visible" : "hidden"); }
    void SetPlace(const WindowPlace& place) override {
        web_.Note("place " + std::to_string(place.left) + "," + std::to_string(place.top) + "," +
                  std::to_string(place.width) + "," + std::to_string(place.height));
    }
    void SetBars(const WindowBars& bars) override {
        web_.Note("bars " + std::to_string(bars.tool) + std::to_string(bars.menu) +
                  std::to_string(bars.address) + std::to_string(bars.status));
    }
    WindowState State() override { return {{0, 0, 1024, 768}, {true, true, true, true}, false}; }
    std::uint64_t Handle() override { return alive_ ? 175 : 0; }
    void SetForeground() override { ++brought_to_front; }
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override {
        return element ? web_.screen_point : std::nullopt;
    }
    std::vector<Element> UnderPointer() override {
        std::vector<Element> path;
        std::shared_ptr<ScriptedPage> at = page_;
        for (const std::string& name : pointer) {
            Node* const node = at->Find(name);
            path.push_back(at->MakeElement(node));
            if (node) at = at->FramePage(*node);
        }
        return path;
    }
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override {
        return subscribers.Connect(events);
    }

    // The window goes away as if killed, or `closed` by its page.
    void Die(bool closed = false) {
        alive_ = false;
        closed_ = closed;
        if (page_) page_->Leave();
        Tell([](BrowserEvents& e) { e.OnQuit(); });
    }
    // Has shown this page for long.
    void Show(const std::string& address) { page_ = ScriptedPage::Load(web_, address); }
    // Shows another page when it is loaded.
    void Load(const std::string& address) {
        ++loading_;
        web_.clock.After(web_.load_ms, [self = shared_from_this(), address] {
            --self->loading_;
            self->Show(address);
            self->Tell([=, found = self->page_ != nullptr](BrowserEvents& e) {
                found ? e.DocumentComplete(true) : e.NavigateError(address, "no page");
            });
        });
    }
    // Tells the subscribers in DoEvents.
    void Tell(const std::function<void(BrowserEvents&)>& event) {
        web_.events.emplace_back(
            [self = shared_from_this(), event] { self->subscribers.ForEach(event); });
    }
    const std::shared_ptr<ScriptedPage>& page() const { return page_; }

    Subscribers<BrowserEvents> subscribers;
    int brought_to_front = 0;
    // Where the user's pointer is: the names of the frames and of the element.
    std::vector<std::string> pointer;

private:
    ScriptedWeb& web_;
    std::shared_ptr<ScriptedPage> page_;
    int loading_ = 0;
    bool alive_ = true;
    bool closed_ = false;
};

inline std::shared_ptr<Browser> ScriptedWeb::Create(std::string& why) {
    why = refusal;
    if (!refusal.empty()) return nullptr;
    Note("create");
    return browser = std::make_shared<ScriptedBrowser>(*this);
}

// The windows that a user has open.
class ScriptedWindows : public BrowserWindows {
public:
    std::vector<std::shared_ptr<Browser>> visible;
    std::shared_ptr<Browser> focused;
    std::shared_ptr<Browser> opens;  // the window that Open answers; null when it refuses

    std::vector<std::shared_ptr<Browser>> Visible() override { return visible; }
    std::shared_ptr<Browser> Focused() override { return focused; }
    std::shared_ptr<Browser> Open(const std::string& /*address*/, std::string& why) override {
        why = opens ? "" : "なし";
        return opens;
    }
};

}  // namespace tamrin::test
