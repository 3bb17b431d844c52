#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "support/scripted_page.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

// A small web of pages in memory, the browser that shows it, and the mouse and keyboard before it.
// `calls` records everything that is done to them, in order.
class ScriptedWeb : public BrowserLauncher, public Input {
public:
    explicit ScriptedWeb(VirtualClock& clock);
    ScriptedWeb(const ScriptedWeb&) = delete;
    ScriptedWeb& operator=(const ScriptedWeb&) = delete;

    std::map<std::string, std::string> pages;  // HTML by address
    int load_ms = 30;                          // how long a page takes to load
    // Runs when a call is recorded that equals the key.
    std::map<std::string, std::function<void()>> on_call;
    std::string refusal;            // why no browser can be started; "" when one can
    std::string refuses_value;      // the id of an element that takes no value
    bool has_screen_points = true;  // whether each element is at (100, 100) of the screen
    bool takes_keys = true;         // whether the window in front takes keys
    bool busy = false;              // whether the browser is always busy

    std::vector<std::string> calls;
    int lookups = 0;  // how often a page was asked for elements
    // The browser made last, null before the first.
    class ScriptedBrowser* browser = nullptr;

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return *this; }

    ScreenPoint GetCursorPos() override { return cursor_; }
    void SetCursorPos(ScreenPoint point) override;
    void LeftButton(bool down) override { Note(down ? "button down" : "button up"); }
    bool SendKeys(const std::vector<KeyStroke>& keys) override;

    void Note(const std::string& call);
    // Has DoEvents deliver an event: one at a time, also when its handler handles events.
    void Queue(std::function<void()> event) { queue_.push_back(std::move(event)); }
    VirtualClock& clock() { return clock_; }

private:
    void Deliver();

    VirtualClock& clock_;
    std::deque<std::function<void()>> queue_;
    bool delivering_ = false;
    ScreenPoint cursor_{3, 4};
};

// A page as a document; the pages of its frames come from the same web.
Document MakeDocument(ScriptedWeb& web, const std::string& address);

class ScriptedBrowser : public Browser, public std::enable_shared_from_this<ScriptedBrowser> {
public:
    explicit ScriptedBrowser(ScriptedWeb& web) : web_(web) {}

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override { return alive_ && (web_.busy || loading_ > 0); }
    int ReadyState() override { return alive_ && page_ && loading_ == 0 ? 4 : 1; }
    bool Alive() override { return alive_; }
    Document document() override { return Document(alive_ ? page_ : nullptr); }
    void SetVisible(bool visible) override { web_.Note(visible ? "visible" : "hidden"); }
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars& bars) override;
    WindowState State() override { return alive_ ? state : WindowState(); }
    std::uint64_t Handle() override { return alive_ ? handle : 0; }
    void SetForeground() override { ++brought_to_front; }
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::vector<Element> UnderPointer() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override {
        return subscribers_.Connect(events);
    }

    // The window goes away as if killed.
    void Die();
    // Has shown this page for long.
    void Show(const std::string& address) { page_ = ScriptedPage::Load(web_, address); }
    // Shows another page when it is loaded.
    void Load(const std::string& address);
    // Tells the subscribers in DoEvents.
    void Tell(std::function<void(BrowserEvents&)> event);
    const std::shared_ptr<ScriptedPage>& page() const { return page_; }
    const Subscribers<BrowserEvents>& subscribers() const { return subscribers_; }

    WindowState state{{0, 0, 1024, 768}, {true, true, true, true}, false};
    std::uint64_t handle = 1;
    int brought_to_front = 0;
    // Where the user's pointer is: the names of the frames and of the element.
    std::vector<std::string> pointer;
    int pointer_questions = 0;

private:
    ScriptedWeb& web_;
    std::shared_ptr<ScriptedPage> page_;
    Subscribers<BrowserEvents> subscribers_;
    int loading_ = 0;
    bool alive_ = true;
};

// The windows that a user has open.
class ScriptedWindows : public BrowserWindows {
public:
    std::vector<std::shared_ptr<Browser>> visible;
    std::shared_ptr<Browser> focused;
    std::shared_ptr<Browser> opens;  // the window that Open answers
    std::string refusal;             // why none can be opened
    std::vector<std::string> opened;

    std::vector<std::shared_ptr<Browser>> Visible() override { return visible; }
    std::shared_ptr<Browser> Focused() override { return focused; }
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override {
        opened.push_back(address);
        why = refusal;
        return refusal.empty() ? opens : nullptr;
    }
};

}  // namespace tamrin::test
