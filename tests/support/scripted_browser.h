#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/headless/virtual_clock.h"
#include "support/html_page.h"

namespace tamrin::test {

// A small web of pages in memory, the browser that shows it, and the mouse and keyboard before it.
// Everything that is done to them is written down in order in `calls`.
class ScriptedWeb : public BrowserLauncher, public Input {
public:
    explicit ScriptedWeb(VirtualClock& clock) : clock_(clock) {}

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
    VirtualClock& clock() { return clock_; }

private:
    VirtualClock& clock_;
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
    int ReadyState() override { return alive_ && document_ && loading_ == 0 ? 4 : 1; }
    bool Alive() override { return alive_; }
    Document document() override { return alive_ ? document_ : Document(); }
    void SetVisible(bool visible) override { web_.Note(visible ? "visible" : "hidden"); }
    void SetPlace(const WindowPlace& place) override;
    void SetBars(const WindowBars& bars) override;
    void SetForeground() override {}
    std::optional<ScreenPoint> ElementScreenPoint(const Element& element) override;
    std::unique_ptr<Connection> Connect(BrowserEvents& events) override;

    // The window goes away as if killed.
    void Die();

private:
    class Subscription;

    ScriptedWeb& web_;
    Document document_;
    BrowserEvents* events_ = nullptr;
    int loading_ = 0;
    bool alive_ = true;
};

}  // namespace tamrin::test
