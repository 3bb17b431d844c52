#include "platform/chromium/launcher.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/chromium/base64.h"

namespace tamrin {
namespace {

using nlohmann::json;

constexpr const char* kNoAnswer =
    "ブラウザに接続できません。もう一度実行しても直らないときは、-browser "
    "で別のブラウザを指定して下さい。";

}  // namespace

ChromiumLauncher::ChromiumLauncher(Processes& processes, Files& files, Clock& clock,
                                   ChromiumSettings settings)
    : processes_(processes),
      files_(files),
      clock_(clock),
      settings_(std::move(settings)),
      devtools_(std::make_shared<DevTools>(
          clock, DevTools::Patience{settings_.answer_limit_ms, settings_.stop_requested})),
      input_([this] { return front_.lock(); }) {}

ChromiumLauncher::~ChromiumLauncher() {
    // The tabs may live on in the hands of others; they know from now on that they are gone.
    devtools_->Close();
    OnClosed();
}

std::shared_ptr<Browser> ChromiumLauncher::Create(std::string& why) {
    devtools_->Poll();
    if (!devtools_->IsOpen() && !StartBrowser(why)) return nullptr;
    const std::string target = first_taken_ ? NewTarget() : FirstTarget();
    first_taken_ = true;
    const std::shared_ptr<Tab> tab = target.empty() ? nullptr : Attach(target);
    if (!tab) {
        why = kNoAnswer;
        return nullptr;
    }
    front_ = tab;
    in_front_ = true;
    auto browser = std::make_shared<ChromiumBrowser>(tab, [this, weak = std::weak_ptr<Tab>(tab)] {
        if (const auto own = weak.lock()) BringToFront(own);
    });
    browsers_.emplace_back(browser);
    return browser;
}

bool ChromiumLauncher::StartBrowser(std::string& why) {
    process_.reset();
    first_taken_ = false;
    process_ = BrowserProcess::Start(
        processes_, files_, clock_,
        {settings_.executable(), settings_.start_limit_ms, settings_.stop_requested}, why);
    if (!process_) return false;
    devtools_->SetListener(*this);
    if (!devtools_->Connect(process_->port(), process_->path(), settings_.start_limit_ms)) {
        process_.reset();
        why = kNoAnswer;
        return false;
    }
    devtools_->Post("", "Target.setDiscoverTargets", {{"discover", true}});
    return true;
}

// The window with which the browser has started.
std::string ChromiumLauncher::FirstTarget() {
    const json targets = devtools_->Call("", "Target.getTargets", json::object()).Result();
    if (!targets.is_object()) return "";
    for (const json& target : targets.value("targetInfos", json::array())) {
        if (target.value("type", "") == "page") return target.value("targetId", "");
    }
    return NewTarget();
}

std::string ChromiumLauncher::NewTarget() {
    return devtools_->Call("", "Target.createTarget", {{"url", "about:blank"}, {"newWindow", true}})
        .Text("/targetId");
}

std::shared_ptr<Tab> ChromiumLauncher::Attach(const std::string& target) {
    const std::string session =
        devtools_->Call("", "Target.attachToTarget", {{"targetId", target}, {"flatten", true}})
            .Text("/sessionId");
    if (session.empty()) return nullptr;
    const auto tab = std::make_shared<Tab>(devtools_, clock_, files_, target, session);
    tabs_.emplace_back(tab);
    return tab->Open() ? tab : nullptr;
}

void ChromiumLauncher::BringToFront(const std::shared_ptr<Tab>& tab) {
    if (in_front_ && front_.lock() == tab) return;
    front_ = tab;
    in_front_ = true;
    tab->BringToFront();
}

std::vector<std::shared_ptr<Tab>> ChromiumLauncher::Tabs() {
    std::vector<std::shared_ptr<Tab>> tabs;
    std::erase_if(tabs_, [&](const std::weak_ptr<Tab>& weak) {
        if (auto tab = weak.lock()) tabs.push_back(std::move(tab));
        return weak.expired();
    });
    return tabs;
}

void ChromiumLauncher::DeliverEvents() {
    devtools_->Poll();
    for (const auto& tab : Tabs()) tab->NextMoment();
    std::erase_if(browsers_, [](const auto& weak) { return weak.expired(); });
    const auto browsers = browsers_;  // a handler may make another one
    for (const auto& weak : browsers) {
        if (const auto browser = weak.lock()) browser->DeliverEvents();
    }
}

std::optional<std::string> ChromiumLauncher::Picture() {
    const auto tab = front_.lock();
    if (!tab) return std::nullopt;
    return DecodeBase64(tab->Call("Page.captureScreenshot", {{"format", "png"}}).Text("/data"));
}

std::uint64_t ChromiumLauncher::RoundTrips() const { return devtools_->RoundTrips(); }

bool ChromiumLauncher::Wants(std::string_view method) const {
    return method == "Target.targetCreated" || method == "Target.targetDestroyed" ||
           Tab::Handles(method);
}

void ChromiumLauncher::OnEvent(const std::string& session, std::string_view method,
                               const json& params) {
    if (method == "Target.targetCreated") {
        // A new window comes to the front, whoever opened it.
        in_front_ = false;
        return;
    }
    for (const auto& tab : Tabs()) {
        if (method == "Target.targetDestroyed") {
            if (tab->target() == params.value("targetId", "")) tab->OnGone();
        } else if (tab->OwnsSession(session) ||
                   (session.empty() && tab->OwnsSession(params.value("sessionId", "")))) {
            tab->OnEvent(session, method, params);
        }
    }
}

void ChromiumLauncher::OnClosed() {
    for (const auto& tab : Tabs()) tab->OnGone();
}

}  // namespace tamrin
