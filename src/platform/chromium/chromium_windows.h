#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/chromium/browser_process.h"
#include "platform/chromium/endpoint.h"
#include "platform/chromium/user_browser.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

struct ChromiumWindowsSettings {
    // Asked when a browser is started for its path or name; "" to look for one.
    std::function<std::string()> executable = [] { return std::string(); };
    // Where a further browser can be reached, as ReadDebugAddress takes it; "" for nowhere.
    std::function<std::string()> debug_address = [] { return std::string(); };
    // The profile of the browser that Open starts; made in an existing folder.
    std::string profile_folder;
    // Asked when that browser is started: whether it goes on when the program ends.
    std::function<bool()> outlives = [] { return true; };
    // Asked while it starts: true gives up. Null: never.
    std::function<bool()> stop_requested{};
    int start_limit_ms = 30000;  // how long it may take to start
    // A further browser whose windows can be recorded, connected by its owner; null for none.
    UserBrowser* played = nullptr;
};

// The windows of Chromium, Chrome and Edge that can be recorded: of the browsers that wrote their
// port into their user's default profile folder, of the one at a given address, of the one that
// Open started, and of the one in which scenarios are played. Each browser is connected to once:
// some ask their user at every connection.
class ChromiumWindows : public BrowserWindows {
public:
    ChromiumWindows(Processes& processes, Files& files, Clock& clock,
                    ChromiumWindowsSettings settings);

    ChromiumWindows(const ChromiumWindows&) = delete;
    ChromiumWindows& operator=(const ChromiumWindows&) = delete;

    // Looks for new browsers at most once a second.
    std::vector<std::shared_ptr<Browser>> Visible() override;
    std::shared_ptr<Browser> Focused() override;

    // Where this program has opened a browser that still runs, it opens a further window.
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override;

    // Handles the messages that have arrived and calls the subscribers. To be called by
    // Clock::DoEvents; never waits.
    void DeliverEvents();

    // How often the program has waited for these browsers so far.
    std::uint64_t RoundTrips() const;

private:
    // A place where a browser may be found.
    struct Source {
        std::string port_file{};  // "" for the given address
        std::string text{};       // what stood there when it was tried last
        std::uint32_t tried_at = 0;
        std::unique_ptr<VersionRequest> request{};  // for its path, while that is not known
        Endpoint endpoint{};
        std::shared_ptr<UserBrowser> browser{};
    };

    void FindBrowsers();
    void Look(Source& source);
    void Connect(Source& source, const Endpoint& endpoint);
    bool IsConnected(const Endpoint& endpoint) const;
    std::shared_ptr<UserBrowser> Make() const;
    std::vector<UserBrowser*> Connections() const;
    bool StartOwn(std::string& why);

    Processes& processes_;
    Files& files_;
    Clock& clock_;
    const ChromiumWindowsSettings settings_;
    std::unique_ptr<BrowserProcess> process_;
    std::shared_ptr<UserBrowser> own_;  // the browser of that process
    std::vector<Source> sources_;       // the first is the given address
    std::optional<std::uint32_t> looked_at_;
};

}  // namespace tamrin
