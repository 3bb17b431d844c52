#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/document.h"
#include "platform/geometry.h"
#include "platform/input.h"

namespace tamrin {

// The events of a browser window. The callbacks run only inside Clock::DoEvents and one at a time:
// while a handler runs, even one that calls DoEvents itself, later events of the browser and its
// pages wait, as a page waits for the handlers of the automation model.
class BrowserEvents {
public:
    virtual ~BrowserEvents() = default;

    // A page is complete; `top` is false when it is the page of a frame.
    virtual void DocumentComplete(bool top) = 0;

    // A navigation begins.
    virtual void BeforeNavigate2(const std::string& url) = 0;

    // Another page is shown, whose elements may still be coming: from now on `document` answers it.
    // DocumentComplete follows when the page is whole.
    virtual void NavigateComplete2() {}

    // A page could not be opened; `reason` is the browser's own word for why.
    virtual void NavigateError(const std::string& url, const std::string& reason) = 0;

    // The page has not answered for a long time; the window is Busy until it does again.
    virtual void NotResponding() {}

    // The window is closed, its page crashed or the browser ended; `Alive` answers false from now.
    virtual void OnQuit() = 0;
};

// Where a browser window stands, in screen pixels.
struct WindowPlace {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const WindowPlace&) const = default;
};

// Which bars of a browser window are shown.
struct WindowBars {
    bool tool = false;
    bool menu = false;
    bool address = false;
    bool status = false;

    bool operator==(const WindowBars&) const = default;
};

// The state of a browser window that a recording keeps.
struct WindowState {
    WindowPlace place;
    WindowBars bars;
    bool full_screen = false;

    bool operator==(const WindowState&) const = default;
};

// One browser window (one tab of it). Reads are total: on a closed window they answer empty.
class Browser {
public:
    virtual ~Browser() = default;

    // Starts to open an address (http, https, file, "javascript:...", or a bare host or path) and
    // returns at once; Busy from now on. False when the window is gone.
    virtual bool Navigate(const std::string& address) = 0;

    // Closes the window.
    virtual void Quit() = 0;

    // Whether the window is loading a page or shows a dialog box of the page. Known from events:
    // costs no call.
    virtual bool Busy() = 0;

    // 0 uninitialized, 1 loading, 2 loaded, 3 interactive, 4 complete. Costs no call.
    virtual int ReadyState() = 0;

    // Whether the window still exists and its page has not crashed. Costs no call.
    virtual bool Alive() = 0;

    // Whether the window was closed as windows are: by its user, its page or Quit. A page that
    // crashed and a browser that was killed were not; nor is what a back end cannot tell.
    virtual bool Closed() { return false; }

    // The top document as it is now; null when there is none. Costs no call.
    virtual Document document() = 0;

    virtual void SetVisible(bool visible) = 0;

    // Moves and sizes the window. A browser that cannot takes what it can.
    virtual void SetPlace(const WindowPlace& place) = 0;

    // Shows and hides bars. A browser whose bars are fixed ignores it.
    virtual void SetBars(const WindowBars& bars) = 0;

    // The place and the bars of the window; where they are unknown, a rectangle of zeros and no
    // bars.
    virtual WindowState State() = 0;

    // The number by which the user tells windows apart: the system's handle of the window, or the
    // browser's own number for it. 0 when the window is gone.
    virtual std::uint64_t Handle() = 0;

    // Brings the window to the front (SetForegroundWindow). Does not wait for it to happen.
    virtual void SetForeground() = 0;

    // The screen point of an element's top left corner, frames counted in. Nothing when the element
    // is gone or not displayed.
    virtual std::optional<ScreenPoint> ElementScreenPoint(const Element& element) = 0;

    // The element of this window's page under the user's mouse pointer: first the elements of the
    // frames around it, the outermost first, last the element itself. Empty when the pointer is
    // elsewhere.
    virtual std::vector<Element> UnderPointer() { return {}; }

    // Asks the pages for the events of all that their user has done until now, in one round trip.
    // True when no event waits to be delivered by Clock::DoEvents.
    virtual bool AllDelivered() { return true; }

    // Subscribes; `events` must outlive the answer.
    virtual std::unique_ptr<Connection> Connect(BrowserEvents& events) = 0;
};

// The browser windows of the user that can be recorded.
class BrowserWindows {
public:
    virtual ~BrowserWindows() = default;

    // The visible ones, the front one first. A window keeps its object as long as it exists. Never
    // waits: what is not known yet is in a later answer.
    virtual std::vector<std::shared_ptr<Browser>> Visible() = 0;

    // The window whose document has the keyboard focus (hasFocus), null when there is none. Asks
    // all windows in one round trip.
    virtual std::shared_ptr<Browser> Focused() = 0;

    // Opens a window to be recorded at an address ("" for an empty page). Its profile is kept for
    // the next one. On failure null, and `why` says in Japanese what to do.
    virtual std::shared_ptr<Browser> Open(const std::string& address, std::string& why) = 0;
};

class BrowserLauncher {
public:
    virtual ~BrowserLauncher() = default;

    // Opens a new, empty browser window. On failure null, and `why` says in Japanese what to do.
    virtual std::shared_ptr<Browser> Create(std::string& why) = 0;

    // The mouse and the keyboard that reach the window made or brought to the front last.
    virtual Input& input() = 0;
};

}  // namespace tamrin
