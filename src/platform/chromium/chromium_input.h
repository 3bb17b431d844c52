#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "platform/chromium/tab.h"
#include "platform/input.h"

namespace tamrin {

// The mouse and the keyboard of one tab, over the DevTools protocol: the person at the computer
// keeps his own. The pointer is this object's, and nobody sees it: a move makes the page draw a
// frame, so a page is told of it only when a button is pressed there, and when it leaves after
// that.
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
    using Calls = std::vector<std::pair<std::string, nlohmann::json>>;

    nlohmann::json MouseEvent(const Tab& tab, const char* type) const;
    static void AddStroke(const KeyStroke& stroke, Calls& calls);
    static bool SendBrowserKey(Tab& tab, const KeyStroke& stroke);

    std::function<std::shared_ptr<Tab>()> tab_;
    void TellMove();

    ScreenPoint cursor_;
    bool moved_ = false;    // the page does not know yet
    bool pressed_ = false;  // a button was pressed where the page last saw the pointer
};

}  // namespace tamrin
