#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/headless/virtual_clock.h"
#include "support/scripted_page.h"

namespace tamrin::test {

// A small web of pages in memory, the browser that shows it, and the mouse and keyboard before it.
// Everything that is done to them is written down in order in `calls`.
class ScriptedWeb : public BrowserLauncher, public Input {
public:
    explicit ScriptedWeb(VirtualClock& clock);
    ScriptedWeb(const ScriptedWeb&) = delete;
    ScriptedWeb& operator=(const ScriptedWeb&) = delete;

    // Pages by address, as HTML.
    std::map<std::string, std::string> pages;
    // How long a page takes to load, milliseconds.
    int load_ms = 30;
    // Runs when a call is written down that equals the key.
    std::map<std::string, std::function<void()>> on_call;
    // Why no browser can be started; "" when one can.
    std::string refusal;
    // Element ids that take no value.
    std::string refuses_value;
    // Whether elements have a place on the screen: (100, 100) for each.
    bool has_screen_points = true;
    // Whether what is in front takes keys.
    bool takes_keys = true;
    // Whether the browser stays busy whatever happens.
    bool busy = false;

    std::vector<std::string> calls;
    // How often the page was asked for elements.
    int lookups = 0;

    // The browser made last, null before the first.
    class ScriptedBrowser* browser = nullptr;

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return *this; }

    ScreenPoint GetCursorPos() override { return cursor_; }
    void SetCursorPos(ScreenPoint point) override;
    void LeftButton(bool down) override { Note(down ? "button down" : "button up"); }
    bool SendKeys(const std::vector<KeyStroke>& keys) override;

    void Note(const std::string& call);
    // Has an event delivered by DoEvents: one at a time, also when its handler handles events.
    void Queue(std::function<void()> event) { queue_.push_back(std::move(event)); }
    VirtualClock& clock() { return clock_; }

private:
    void Deliver();

    VirtualClock& clock_;
    std::deque<std::function<void()>> queue_;
    bool delivering_ = false;
    ScreenPoint cursor_{3, 4};
};

// A page as a document; the frames' pages come from the same web.
Document MakeDocument(ScriptedWeb& web, const std::string& address);

class ScriptedBrowser : public Browser, public std::enable_shared_from_this<ScriptedBrowser> {
public:
    explicit ScriptedBrowser(ScriptedWeb& web) : web_(web) {}

    bool Navigate(const std::string& address) override;
    void Quit() override;
    bool Busy() override { return alive_ && (web_.busy || loading_ > 0); }
    int ReadyState() override { return alive_ && page_ && loading_ == 0 ? 4 : 1; }
    bool Alive() override { return alive_; }
    Document document() override;
    void SetVisible(bool visible) override { web_.Note(visible ? "visible" : "hidden"); }
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars& bars) override;
    WindowState State() override { return alive_ ? state : WindowState(); }
    std::uint64_t Handle() override { return alive_ ? handle : 0; }
    void SetForeground() override { ++brought_to_front; }
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::vector<Element> UnderPointer() override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    // The window goes away as if killed.
    void Die();
    // Begins with a page that has been shown for long.
    void Show(const std::string& address);

    WindowState state{{0, 0, 1024, 768}, {true, true, true, true}, false};
    std::uint64_t handle = 1;
    int brought_to_front = 0;
    // Where the user's pointer stands: the names of the frames and of the element.
    std::vector<std::string> pointer;
    int pointer_questions = 0;

    // Tells the subscribers in DoEvents.
    void Tell(std::function<void(BrowserEvents&)> event);
    // Shows another page after the time that it takes to load.
    void Load(const std::string& address);
    const std::shared_ptr<ScriptedPage>& page() const { return page_; }
    std::vector<BrowserEvents*> subscribers() const { return subscribers_; }

private:
    class Subscription;

    ScriptedWeb& web_;
    std::shared_ptr<ScriptedPage> page_;
    std::vector<BrowserEvents*> subscribers_;
    int loading_ = 0;
    bool alive_ = true;
};

}  // namespace tamrin::test
