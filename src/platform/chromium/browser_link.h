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
// as they arrive, and their subscribers in DeliverEvents.
class BrowserLink : private DevTools::Listener {
public:
    // Told of every "Target.targetCreated", "Target.targetInfoChanged" and "Target.targetDestroyed"
    // once the browser was asked to discover its targets. It must not wait.
    using OnTarget = std::function<void(std::string_view method, const nlohmann::json& params)>;

    BrowserLink(const Clock& clock, const Files& files, DevTools::Patience patience,
                OnTarget on_target);
    // The windows may live on in the hands of others; they know from then on that they are gone.
    ~BrowserLink() override;

    BrowserLink(const BrowserLink&) = delete;
    BrowserLink& operator=(const BrowserLink&) = delete;

    DevTools& devtools() { return *devtools_; }
    const DevTools& devtools() const { return *devtools_; }

    // Has the browser tell of its targets, those that it has first.
    void Discover();

    // The tab behind a session. It is dropped when nobody holds it any more; so is a browser.
    std::shared_ptr<Tab> MakeTab(const std::string& target, const std::string& session,
                                 Tab::Owner owner);
    std::shared_ptr<ChromiumBrowser> MakeBrowser(const std::shared_ptr<Tab>& tab,
                                                 std::function<void()> bring_to_front);

    // Handles what has arrived and calls the subscribers; never waits.
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
