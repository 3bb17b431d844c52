#include "platform/chromium/tab.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

using nlohmann::json;

// Long enough to find the element on a full page.
constexpr std::uint32_t kOutlineMs = 2000;

json Colour(double opacity) { return {{"r", 230}, {"g", 60}, {"b", 0}, {"a", opacity}}; }

}  // namespace

Tab::Tab(std::shared_ptr<DevTools> devtools, const Clock& clock, const Files& files,
         std::string target, const std::string& session, Owner owner)
    : devtools_(std::move(devtools)),
      clock_(clock),
      files_(files),
      target_(std::move(target)),
      owner_(owner),
      frames_(target_, session, "tamrin " + session),
      notices_(frames_, clock),
      agents_(*devtools_, frames_, notices_),
      loads_(*devtools_, clock, frames_, agents_, notices_),
      dialogs_(*devtools_, agents_, loads_),
      watcher_(*devtools_, frames_, agents_, notices_, owner == Owner::kProgram) {}

Tab::~Tab() {
    const std::string& session = frames_.sessions().front();
    if (Alive()) {
        watcher_.SetWatched(false);
        devtools_->Post("", "Target.detachFromTarget", {{"sessionId", session}});
    }
    devtools_->Forget(session);
}

void Tab::SetUp(const std::string& session) {
    devtools_->Post(session, "Page.enable", json::object());
    watcher_.Bind(session);
    devtools_->Post(
        session, "Page.addScriptToEvaluateOnNewDocument",
        {{"source", PageAgentScript()}, {"worldName", frames_.world()}, {"runImmediately", true}});
    devtools_->Post(session, "Runtime.enable", json::object());
    watcher_.AttachFrames(session);
    // A target that waits for its debugger answers nothing before this.
    devtools_->Post(session, "Runtime.runIfWaitingForDebugger", json::object());
}

void Tab::BeginToOpen() {
    if (opening_) return;
    opening_ = true;
    const std::string& session = frames_.sessions().front();
    SetUp(session);
    if (owner_ == Owner::kProgram) {
        // A page without the focus gets no events when its fields gain and lose it.
        agents_.Post("Emulation.setFocusEmulationEnabled", {{"enabled", true}});
    }
    devtools_->Ask("", "Browser.getWindowForTarget", {{"targetId", target_}},
                   [self = weak_from_this()](const DevToolsReply& reply) {
                       const auto tab = self.lock();
                       if (tab) tab->window_ = static_cast<int>(reply.Number("/windowId"));
                   });
    devtools_->Ask(
        session, "Runtime.evaluate",
        {{"expression", "[devicePixelRatio, document.readyState]"}, {"returnByValue", true}},
        [this](const DevToolsReply& reply) {
            const double scale = reply.Number("/result/value/0");
            if (scale <= 0) return;
            viewport_.scale = scale;
            loads_.Found(reply.Text("/result/value/1"));
        });
}

void Tab::LeaveToUser() {
    if (owner_ == Owner::kUser || !Alive()) return;
    owner_ = Owner::kUser;
    agents_.Post("Emulation.setFocusEmulationEnabled", {{"enabled", false}});
}

bool Tab::Open() {
    BeginToOpen();
    const auto reply =
        devtools_->Call(frames_.sessions().front(), "Runtime.evaluate", {{"expression", "0"}});
    return Alive() && reply.end == DevToolsReply::End::kAnswered;
}

bool Tab::Busy() const { return Alive() && (dialogs_.IsOpen() || agents_.Hung() || loads_.Busy()); }

void Tab::Navigate(const std::string& url) {
    agents_.StopScripts();
    loads_.Navigate(url);
}

void Tab::Close() {
    agents_.StopScripts();
    devtools_->Post("", "Target.closeTarget", {{"targetId", target_}});
}

void Tab::SetPlace(const WindowPlace& place) {
    if (!Alive()) return;
    const auto unscaled = [&](int pixels) {
        return static_cast<int>(std::lround(pixels / viewport_.scale));
    };
    // A maximised window takes no numbers; it must first be a normal one.
    const json normal{{"windowState", "normal"}};
    const json bounds{{"left", unscaled(place.left)},
                      {"top", unscaled(place.top)},
                      {"width", unscaled(place.width)},
                      {"height", unscaled(place.height)}};
    for (const json& change : {normal, bounds}) {
        devtools_->Post("", "Browser.setWindowBounds", {{"windowId", window_}, {"bounds", change}});
    }
    NextMoment();
}

WindowState Tab::State() {
    if (!Alive()) return {};
    const auto reply = devtools_->Call("", "Browser.getWindowForTarget", {{"targetId", target_}});
    if (reply.end != DevToolsReply::End::kAnswered) return {};
    const auto scaled = [&](const char* pointer) {
        return static_cast<int>(std::lround(reply.Number(pointer) * viewport_.scale));
    };
    // The protocol does not say which bars are shown; an ordinary window shows them all.
    const bool full_screen = reply.Text("/bounds/windowState") == "fullscreen";
    return {{scaled("/bounds/left"), scaled("/bounds/top"), scaled("/bounds/width"),
             scaled("/bounds/height")},
            {true, true, true, true},
            full_screen};
}

bool Tab::Enter(const std::vector<DevToolsCall>& events) {
    const bool sent = agents_.CallAll(events);
    Settle();
    return sent;
}

void Tab::EnterInDialog(const KeyStroke& key) {
    if (dialogs_.TakeKey(key)) Settle();
}

bool Tab::AllDelivered() {
    Settle();
    return notices_.Empty();
}

void Tab::Settle() {
    if (!Busy()) agents_.Settle();
    NextMoment();
}

void Tab::Outline(const std::string& agent, const std::string& object) {
    const FrameInfo* frame = Alive() ? frames_.WithAgent(agent) : nullptr;
    if (!frame) return;
    const std::string& session = frame->session;
    if (outline_session_ != session) {
        DropOutline();
        devtools_->Post(session, "DOM.enable", json::object());
        devtools_->Post(session, "Overlay.enable", json::object());
    }
    outline_session_ = session;
    outlined_in_ = agent;
    outlined_at_ = clock_.TickCount();
    devtools_->Post(session, "Overlay.highlightNode",
                    {{"objectId", object},
                     {"highlightConfig",
                      {{"contentColor", Colour(0.35)},
                       {"paddingColor", Colour(0.35)},
                       {"borderColor", Colour(0.9)}}}});
    devtools_->Post(session, "Runtime.releaseObject", {{"objectId", object}});
}

void Tab::EndOutline() {
    const bool over = clock_.TickCount() - outlined_at_ >= kOutlineMs;
    if (over || !frames_.WithAgent(outlined_in_)) DropOutline();
}

// These domains slow a page down, so they are enabled only while something is highlighted.
void Tab::DropOutline() {
    if (outline_session_.empty()) return;
    devtools_->Post(outline_session_, "Overlay.disable", json::object());
    devtools_->Post(outline_session_, "DOM.disable", json::object());
    outline_session_.clear();
}

bool Tab::Reads(std::string_view method) {
    return FrameTracker::Handlers().contains(method) || LoadTracker::Handlers().contains(method) ||
           DialogTracker::Handlers().contains(method) || UserWatcher::Handlers().contains(method);
}

void Tab::OnEvent(const std::string& session, std::string_view method, const json& params) {
    if (!Alive()) return;
    try {
        HandleEvent(frames_, session, method, params);
        HandleEvent(loads_, session, method, params);
        HandleEvent(dialogs_, session, method, params);
        HandleEvent(watcher_, session, method, params);
        if (method == "Target.attachedToTarget") return SetUp(TextOf(params, "sessionId"));
        const bool detached = method == "Target.detachedFromTarget";
        if (!detached && method != "Inspector.targetCrashed") return;
        const std::string ended = detached ? TextOf(params, "sessionId") : session;
        if (frames_.IsTopSession(ended)) return OnGone(detached);
        devtools_->CutShort(ended);
    } catch (const json::exception&) {
        // A browser of another version may write the event otherwise; then it is ignored.
    }
}

void Tab::OnGone(bool closed) {
    if (!Alive()) return;
    closed_ = closed;
    dialogs_.End();
    agents_.End();
    notices_.EndNavigationWait();
    notices_.Add({.kind = Notice::Kind::kQuit});
}

}  // namespace tamrin
