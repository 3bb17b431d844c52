#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "platform/chromium/devtools.h"
#include "platform/chromium/load_tracker.h"
#include "platform/chromium/page_agents.h"
#include "platform/input.h"

namespace tamrin {

// The dialog box that a tab's page shows (alert, confirm, prompt, or the question before it is
// left), and the keys with which a person would answer it.
class DialogTracker {
public:
    DialogTracker(DevTools& devtools, PageAgents& agents, LoadTracker& loads);

    static const EventHandlers<DialogTracker>& Handlers();

    bool IsOpen() const { return dialog_.has_value(); }

    // Gives the open box a key: ENTER presses the button that has the focus (at first "OK"; TAB,
    // LEFT and RIGHT move it), and so does a blank, except in a prompt's text. ESC presses
    // "Cancel". Characters go into a prompt's text and replace its default. A key that closes the
    // box waits for the browser; true when the page then runs on.
    bool TakeKey(const KeyStroke& key);

    // The tab is gone, and its box with it.
    void End() { dialog_.reset(); }

private:
    enum class Focus { kText, kOk, kCancel };
    struct Dialog {
        std::string type;  // the protocol's: "alert", "confirm", "prompt" or "beforeunload"
        std::string text;  // of a prompt
        std::string session;
        Focus focus;
        bool typed = false;
    };

    void OnOpening(const std::string& session, const nlohmann::json& params);
    void OnClosed(const std::string& session, const nlohmann::json& params);
    // Which button the key presses; nothing when it presses none.
    static std::optional<Focus> Press(Dialog& dialog, const KeyStroke& key);
    static void MoveFocus(Dialog& dialog, bool forward);

    DevTools& devtools_;
    PageAgents& agents_;
    LoadTracker& loads_;
    std::optional<Dialog> dialog_;
};

}  // namespace tamrin
