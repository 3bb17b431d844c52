#include "platform/chromium/browser_link.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tamrin {

using nlohmann::json;

BrowserLink::BrowserLink(const Clock& clock, const Files& files, DevTools::Patience patience,
                         OnTarget on_target)
    : clock_(clock),
      files_(files),
      on_target_(std::move(on_target)),
      devtools_(std::make_shared<DevTools>(clock, std::move(patience))) {
    devtools_->SetListener(*this);
}

BrowserLink::~BrowserLink() {
    devtools_->Close();
    BrowserLink::OnClosed();
}

void BrowserLink::Discover() {
    devtools_->Post("", "Target.setDiscoverTargets", {{"discover", true}});
}

std::string BrowserLink::NewTarget() {
    return devtools_->Call("", "Target.createTarget", {{"url", "about:blank"}, {"newWindow", true}})
        .Text("/targetId");
}

void BrowserLink::Attach(const std::string& target,
                         std::function<void(const std::string&)> on_session) {
    devtools_->Ask("", "Target.attachToTarget", {{"targetId", target}, {"flatten", true}},
                   [on_session = std::move(on_session)](const DevToolsReply& reply) {
                       on_session(reply.Text("/sessionId"));
                   });
}

std::shared_ptr<Tab> BrowserLink::MakeTab(const std::string& target, const std::string& session,
                                          Tab::Owner owner) {
    const auto tab = std::make_shared<Tab>(devtools_, clock_, files_, target, session, owner);
    tabs_.emplace_back(tab);
    return tab;
}

std::shared_ptr<ChromiumBrowser> BrowserLink::MakeBrowser(const std::shared_ptr<Tab>& tab,
                                                          std::function<void()> bring_to_front) {
    auto browser = std::make_shared<ChromiumBrowser>(tab, std::move(bring_to_front));
    browsers_.emplace_back(browser);
    return browser;
}

std::vector<std::shared_ptr<Tab>> BrowserLink::Tabs() {
    std::vector<std::shared_ptr<Tab>> tabs;
    std::erase_if(tabs_, [&](const std::weak_ptr<Tab>& weak) {
        if (auto tab = weak.lock()) tabs.push_back(std::move(tab));
        return weak.expired();
    });
    return tabs;
}

void BrowserLink::LeaveToUser() {
    for (const auto& tab : Tabs()) tab->LeaveToUser();
}

void BrowserLink::DeliverEvents() {
    devtools_->Poll();
    for (const auto& tab : Tabs()) {
        tab->NextMoment();
        tab->EndOutline();
    }
    std::erase_if(browsers_, [](const auto& weak) { return weak.expired(); });
    const auto browsers = browsers_;  // a handler may make another one
    for (const auto& weak : browsers) {
        if (const auto browser = weak.lock()) browser->DeliverEvents();
    }
}

bool BrowserLink::Wants(std::string_view method) const {
    return method == "Target.targetCreated" || method == "Target.targetInfoChanged" ||
           method == "Target.targetDestroyed" || Tab::Reads(method);
}

void BrowserLink::OnEvent(const std::string& session, std::string_view method, const json& params) {
    const bool destroyed = method == "Target.targetDestroyed";
    const std::string target = destroyed ? TextOf(params, "targetId") : "";
    for (const auto& tab : Tabs()) {
        if (destroyed) {
            if (tab->target() == target) tab->OnGone(true);
        } else if (tab->frames().HasSession(session) ||
                   (session.empty() && tab->frames().HasSession(TextOf(params, "sessionId")))) {
            tab->OnEvent(session, method, params);
        }
    }
    if (method.starts_with("Target.target")) on_target_(method, params);
}

void BrowserLink::OnClosed() {
    for (const auto& tab : Tabs()) tab->OnGone(false);
}

}  // namespace tamrin
