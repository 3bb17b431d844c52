#include "platform/chromium/load_tracker.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

using nlohmann::json;

// A request that no load follows within this time has come to nothing.
constexpr std::uint32_t kRequestMs = 500;

// A frame may load for as long as its page lives (some pages receive their news that way); after
// this time it no longer keeps the tab busy. The top frame does for as long as it takes.
constexpr std::uint32_t kFrameMs = 10000;

}  // namespace

LoadTracker::LoadTracker(DevTools& devtools, const Clock& clock, const FrameTracker& frames,
                         PageAgents& agents, NoticeQueue& notices)
    : devtools_(devtools), clock_(clock), frames_(frames), agents_(agents), notices_(notices) {}

const EventHandlers<LoadTracker>& LoadTracker::Handlers() {
    static const EventHandlers<LoadTracker> handlers = {
        {"Page.frameRequestedNavigation", &LoadTracker::OnRequestedNavigation},
        {"Page.frameScheduledNavigation", &LoadTracker::OnScheduledNavigation},
        {"Page.frameStartedNavigating", &LoadTracker::OnStartedNavigating},
        {"Page.frameStartedLoading", &LoadTracker::OnStartedLoading},
        {"Page.frameStoppedLoading", &LoadTracker::OnStoppedLoading},
        {"Page.frameNavigated", &LoadTracker::OnFrameNavigated},
        {"Page.frameDetached", &LoadTracker::OnFrameDetached},
        {"Page.domContentEventFired", &LoadTracker::OnDomContent},
        {"Page.loadEventFired", &LoadTracker::OnLoad},
    };
    return handlers;
}

void LoadTracker::Navigate(const std::string& url) {
    ++navigates_;
    ready_state_ = 1;
    devtools_.Ask(frames_.SessionOf(""), "Page.navigate", {{"url", url}},
                  [this, url](const DevToolsReply& reply) { OnNavigateReply(url, reply); });
}

// The browser answers when the page begins to arrive, or cannot.
void LoadTracker::OnNavigateReply(const std::string& url, const DevToolsReply& reply) {
    --navigates_;
    // What is no address starts no load at all; the old page stays.
    if (navigates_ == 0 && !TopLoads()) ready_state_ = 4;
    if (reply.end != DevToolsReply::End::kRefused) return;
    // There is no error page to tell the reason.
    notices_.Add({.kind = Notice::Kind::kError, .url = url, .reason = "ERR_INVALID_URL"});
}

void LoadTracker::Reload() {
    Requested(frames_.Top().id);
    agents_.Post("Page.reload", json::object());
}

void LoadTracker::GoThroughHistory(int steps) {
    const json history = agents_.Call("Page.getNavigationHistory", json::object()).Result();
    if (!history.is_object()) return;
    const json entries = history.value("entries", json::array());
    const int entry = history.value("currentIndex", 0) + steps;
    if (entry < 0 || entry >= static_cast<int>(entries.size())) return;
    Requested(frames_.Top().id);
    agents_.Post("Page.navigateToHistoryEntry",
                 {{"entryId", entries[static_cast<std::size_t>(entry)].value("id", 0)}});
}

void LoadTracker::OnRequestedNavigation(const std::string& /*session*/, const json& params) {
    if (TextOf(params, "disposition") == "currentTab") Requested(TextOf(params, "frameId"));
}

// The first event after a click on a link. A page may also schedule a navigation for later; until
// then it is not busy.
void LoadTracker::OnScheduledNavigation(const std::string& /*session*/, const json& params) {
    if (params.value("delay", 0.0) <= 0.1) Requested(TextOf(params, "frameId"));
}

bool LoadTracker::LeavesDocument(const json& params) {
    const std::string type = TextOf(params, "navigationType");
    return type != "sameDocument" && type != "historySameDocument";
}

void LoadTracker::OnStartedNavigating(const std::string& /*session*/, const json& params) {
    const std::string frame = TextOf(params, "frameId");
    if (LeavesDocument(params) && frames_.IsTop(frame)) Requested(frame);
}

void LoadTracker::Requested(const std::string& frame) {
    const auto load = std::find_if(loads_.begin(), loads_.end(),
                                   [&](const Load& other) { return other.frame == frame; });
    if (load == loads_.end()) {
        loads_.push_back({frame, clock_.TickCount(), false});
    } else if (!load->started) {
        load->tick = clock_.TickCount();
    }
    // While a page is being replaced it answers nothing.
    agents_.PageLeaves();
}

void LoadTracker::OnStartedLoading(const std::string& /*session*/, const json& params) {
    const std::string frame = TextOf(params, "frameId");
    Remove(frame);
    loads_.push_back({frame, clock_.TickCount(), true});
    if (frames_.IsTop(frame)) ready_state_ = 1;
}

void LoadTracker::OnFrameNavigated(const std::string& /*session*/, const json& params) {
    const json& frame = params.at("frame");
    if (!frames_.IsTop(TextOf(frame, "id"))) return;
    ready_state_ = 2;
    error_url_ = TextOf(frame, "unreachableUrl");
    asking_why_ = false;
    // A page that the browser has kept comes back as it was, without a load.
    if (TextOf(params, "type") == "BackForwardCacheRestore") Complete();
}

void LoadTracker::OnDomContent(const std::string& session, const json& /*params*/) {
    if (frames_.IsTopSession(session)) ready_state_ = 3;
}

void LoadTracker::OnLoad(const std::string& session, const json& /*params*/) {
    if (frames_.IsTopSession(session)) Complete();
}

void LoadTracker::Complete() {
    ready_state_ = 4;
    if (error_url_.empty()) {
        notices_.Add({.kind = Notice::Kind::kComplete});
        return;
    }
    // The browser's error page knows the reason. The tab stays busy until it answers, so that
    // whoever waits for the page learns of the failure as well.
    asking_why_ = true;
    devtools_.Ask(frames_.SessionOf(""), "Runtime.evaluate",
                  {{"expression", "loadTimeDataRaw.errorCode"}, {"returnByValue", true}},
                  [this, url = error_url_](const DevToolsReply& reply) {
                      OnErrorCode(url, reply.Text("/result/value"));
                  });
}

void LoadTracker::OnErrorCode(const std::string& url, const std::string& reason) {
    asking_why_ = false;
    notices_.Add({.kind = Notice::Kind::kError,
                  .url = url,
                  .reason = reason.empty() ? "ERR_FAILED" : reason});
    notices_.Add({.kind = Notice::Kind::kComplete});
}

void LoadTracker::OnStoppedLoading(const std::string& /*session*/, const json& params) {
    const std::string frame = TextOf(params, "frameId");
    Remove(frame);
    if (!frames_.IsTop(frame)) {
        notices_.Add({.kind = Notice::Kind::kComplete, .top = false});
        return;
    }
    if (navigates_ == 0) ready_state_ = 4;
    notices_.EndNavigationWait();
}

void LoadTracker::OnFrameDetached(const std::string& /*session*/, const json& params) {
    if (TextOf(params, "reason") != "swap") Remove(TextOf(params, "frameId"));
}

void LoadTracker::Found(std::string_view state) {
    if (loads_.empty() && navigates_ == 0 && state == "interactive") ready_state_ = 3;
}

void LoadTracker::Refused() {
    std::erase_if(loads_, [](const Load& load) { return !load.started; });
    if (navigates_ == 0 && !TopLoads()) ready_state_ = 4;
    notices_.ForgetLastSnapshots();
}

void LoadTracker::Remove(std::string_view frame) {
    std::erase_if(loads_, [&](const Load& load) { return load.frame == frame; });
}

bool LoadTracker::TopLoads() const {
    return std::any_of(loads_.begin(), loads_.end(),
                       [&](const Load& load) { return load.started && frames_.IsTop(load.frame); });
}

bool LoadTracker::Busy() const {
    const std::uint32_t tick = clock_.TickCount();
    return navigates_ > 0 || asking_why_ ||
           std::any_of(loads_.begin(), loads_.end(), [&](const Load& load) {
               const std::uint32_t age = tick - load.tick;
               if (!load.started) return age < kRequestMs;
               return frames_.IsTop(load.frame) || age < kFrameMs;
           });
}

}  // namespace tamrin
