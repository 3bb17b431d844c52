#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/browser.h"
#include "platform/chromium/browser_process.h"
#include "platform/chromium/chromium_input.h"
#include "platform/chromium/tab.h"
#include "platform/chromium/user_browser.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

struct ChromiumSettings {
    // Asked when the browser is started for its path or name; "" to look for one.
    std::function<std::string()> executable = [] { return std::string(); };
    // Asked about every 50 ms while the program waits for the browser: true ends the wait. Null:
    // never.
    std::function<bool()> stop_requested{};
    // Asked when the browser is started: whether it goes on when the program ends.
    std::function<bool()> outlives = [] { return false; };
    int start_limit_ms = 30000;   // how long the browser may take to start
    int answer_limit_ms = 30000;  // how long a page may take to answer before it counts as hung
};

// The windows in which scenarios are played, of Chromium, Chrome or Edge. The browser is started
// for the first window, with a temporary profile; all windows share it. Dropping the launcher ends
// it, if it does not outlive the program.
class ChromiumLauncher : public BrowserLauncher {
public:
    ChromiumLauncher(Processes& processes, Files& files, Clock& clock, ChromiumSettings settings);

    ChromiumLauncher(const ChromiumLauncher&) = delete;
    ChromiumLauncher& operator=(const ChromiumLauncher&) = delete;

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return input_; }

    // Handles the messages that have arrived and calls the subscribers. To be called by
    // Clock::DoEvents; never waits.
    void DeliverEvents();

    // The same browser as its user sees it: its windows can be recorded when nothing is played.
    UserBrowser& browser() { return browser_; }

    // The shown page as the bytes of a PNG file; nothing when there is none.
    std::optional<std::string> Picture();

    // How often the program has waited for an answer of the browser.
    std::uint64_t RoundTrips() const;

private:
    BrowserLink& link() { return browser_.link(); }
    bool StartBrowser(std::string& why);
    std::string FirstTarget();
    std::shared_ptr<Tab> Attach(const std::string& target);
    void BringToFront(const std::shared_ptr<Tab>& tab);

    Processes& processes_;
    Files& files_;
    Clock& clock_;
    const ChromiumSettings settings_;
    std::unique_ptr<BrowserProcess> process_;
    UserBrowser browser_;
    std::weak_ptr<Tab> front_;
    bool in_front_ = false;  // whether the browser shows that tab, as far as is known
    bool first_taken_ = false;
    ChromiumInput input_;
};

}  // namespace tamrin
