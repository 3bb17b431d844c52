#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "platform/chromium/tab.h"
#include "platform/input.h"

namespace tamrin {

// The mouse and the keyboard of one tab, over the DevTools protocol; the user's own stay free. The
// pointer is invisible. A move makes the page draw a frame, so a move is sent only before a button
// is pressed, and when the pointer leaves after that.
class ChromiumInput : public Input {
public:
    // `tab` answers the tab to which input goes, null when there is none.
    explicit ChromiumInput(std::function<std::shared_ptr<Tab>()> tab) : tab_(std::move(tab)) {}

    ScreenPoint GetCursorPos() override { return cursor_; }
    void SetCursorPos(ScreenPoint point) override;

    // Releasing waits until the page has handled the click, or a dialog box holds it up.
    void LeftButton(bool down) override;

    // While the page shows a dialog box, the keys answer it. Keys on which a browser itself acts
    // (F5, Alt+Left, Ctrl+W, ...) do so unless the page prevents it.
    bool SendKeys(const std::vector<KeyStroke>& keys) override;

private:
    void SendMove();
    nlohmann::json MouseEvent(const Tab& tab, const char* type) const;
    static void AddStroke(const KeyStroke& stroke, std::vector<DevToolsCall>& calls);
    static bool SendBrowserKey(Tab& tab, const KeyStroke& stroke);

    std::function<std::shared_ptr<Tab>()> tab_;
    ScreenPoint cursor_;
    bool moved_ = false;    // since the last move that was sent
    bool pressed_ = false;  // a button was pressed where the page last saw the pointer
};

}  // namespace tamrin
