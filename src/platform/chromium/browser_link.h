#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/chromium_browser.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/tab.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace tamrin {

// The connection to one browser, and the windows of it that the program has. Events reach the tabs
// as they arrive, and the subscribers in DeliverEvents.
class BrowserLink : private DevTools::Listener {
public:
    // Called with every "Target.targetCreated", "Target.targetInfoChanged" and
    // "Target.targetDestroyed" after Discover. It must not wait.
    using OnTarget = std::function<void(std::string_view method, const nlohmann::json& params)>;

    BrowserLink(const Clock& clock, const Files& files, DevTools::Patience patience,
                OnTarget on_target);
    // Windows that are still held are not Alive from then on.
    ~BrowserLink() override;

    BrowserLink(const BrowserLink&) = delete;
    BrowserLink& operator=(const BrowserLink&) = delete;

    DevTools& devtools() { return *devtools_; }
    const DevTools& devtools() const { return *devtools_; }

    // Has the browser report its targets, those that it has already first.
    void Discover();

    // Opens a window and answers its target, "" when the browser does not answer.
    std::string NewTarget();
    // Attaches to a target; `on_session` is called with the session, "" on failure.
    void Attach(const std::string& target, std::function<void(const std::string&)> on_session);

    // The tab of a session. The link drops it when nobody else holds it, and likewise a browser.
    std::shared_ptr<Tab> MakeTab(const std::string& target, const std::string& session,
                                 Tab::Owner owner);
    std::shared_ptr<ChromiumBrowser> MakeBrowser(const std::shared_ptr<Tab>& tab,
                                                 std::function<void()> bring_to_front);

    // The program's tabs behave from now on as the user sees them.
    void LeaveToUser();

    // Handles the messages that have arrived and calls the subscribers; never waits.
    void DeliverEvents();

private:
    bool Wants(std::string_view method) const override;
    void OnEvent(const std::string& session, std::string_view method,
                 const nlohmann::json& params) override;
    void OnClosed() override;

    std::vector<std::shared_ptr<Tab>> Tabs();

    const Clock& clock_;
    const Files& files_;
    OnTarget on_target_;
    std::shared_ptr<DevTools> devtools_;
    std::vector<std::weak_ptr<Tab>> tabs_;
    std::vector<std::weak_ptr<ChromiumBrowser>> browsers_;
};

}  // namespace tamrin
