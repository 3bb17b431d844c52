#include "platform/chromium/user_watcher.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "platform/chromium/load_tracker.h"

namespace tamrin {
namespace {

using nlohmann::json;
using Kind = Notice::Kind;

// The function by which the page agents report what the user does.
constexpr const char* kTell = "tamrinTell";

const std::unordered_map<std::string_view, Kind> kKinds = {
    {"click", Kind::kClick},  {"focusin", Kind::kFocusIn}, {"leave", Kind::kLeave},
    {"key", Kind::kKeyPress}, {"submit", Kind::kSubmit},
};

}  // namespace

UserWatcher::UserWatcher(DevTools& devtools, const FrameTracker& frames, PageAgents& agents,
                         NoticeQueue& notices, bool holds_frames)
    : devtools_(devtools),
      frames_(frames),
      agents_(agents),
      notices_(notices),
      holds_frames_(holds_frames) {}

const EventHandlers<UserWatcher>& UserWatcher::Handlers() {
    static const EventHandlers<UserWatcher> handlers = {
        {"Page.frameStartedNavigating", &UserWatcher::OnStartedNavigating},
        {"Page.frameNavigated", &UserWatcher::OnFrameNavigated},
        {"Page.documentOpened", &UserWatcher::OnDocumentOpened},
        {"Runtime.executionContextCreated", &UserWatcher::OnContextCreated},
        {"Runtime.bindingCalled", &UserWatcher::OnBindingCalled},
    };
    return handlers;
}

void UserWatcher::Bind(const std::string& session) {
    if (!watched_) return;
    devtools_.Post(session, "Runtime.addBinding",
                   {{"name", kTell}, {"executionContextName", frames_.world()}});
}

// Frames of other sites are targets of their own. Where the agent must be in them before their
// scripts, they wait for it.
void UserWatcher::AttachFrames(const std::string& session) {
    const json only_frames = {{{"type", "iframe"}}, {{"exclude", true}}};
    devtools_.Post(session, "Target.setAutoAttach",
                   {{"autoAttach", true},
                    {"waitForDebuggerOnStart", watched_ || holds_frames_},
                    {"flatten", true},
                    {"filter", only_frames}});
}

void UserWatcher::SetWatched(bool watched) {
    if (watched_ == watched) return;
    watched_ = watched;
    for (const std::string& session : frames_.sessions()) {
        if (watched) {
            Bind(session);
        } else {
            devtools_.Post(session, "Runtime.removeBinding", {{"name", kTell}});
        }
        // Asking once more for what already holds would detach frames that wait, and leave them so.
        if (!holds_frames_) AttachFrames(session);
    }
    for (const FrameInfo& frame : frames_.All()) {
        agents_.RunLater(frame.agent, watched ? "tamrin.watch()" : "tamrin.hush()");
    }
}

void UserWatcher::WatchAgain(const std::string& session) {
    for (const FrameInfo& frame : frames_.All()) {
        if (watched_ && frame.session == session) agents_.RunLater(frame.agent, "tamrin.watch()");
    }
}

void UserWatcher::OnStartedNavigating(const std::string& /*session*/, const json& params) {
    if (!LoadTracker::LeavesDocument(params)) return;
    const std::string id = TextOf(params, "frameId");
    const FrameInfo* frame = frames_.WithId(id);
    const std::string agent = frame ? frame->agent : std::string();
    notices_.AddNavigation({.kind = Kind::kBeforeNavigate,
                            .top = frames_.IsTop(id),
                            .url = TextOf(params, "url"),
                            .agent = agent},
                           watched_ && !agent.empty());
}

// A page that the browser has kept comes back as it was, even if nobody watched it then.
void UserWatcher::OnFrameNavigated(const std::string& session, const json& params) {
    const bool restored = TextOf(params, "type") == "BackForwardCacheRestore";
    if (restored && frames_.IsTop(TextOf(params.at("frame"), "id"))) WatchAgain(session);
}

// The page rewrites itself, which removes the agent's listeners.
void UserWatcher::OnDocumentOpened(const std::string& session, const json& /*params*/) {
    WatchAgain(session);
}

void UserWatcher::OnContextCreated(const std::string& session, const json& params) {
    const FrameInfo* frame = frames_.WithContext(session, params.at("context").value("id", 0));
    if (!frame) return;
    if (watched_) {
        // A page in a process of its own may have missed a binding that was added just before the
        // navigation.
        Bind(session);
        agents_.RunLater(frame->agent, "tamrin.watch()");
    }
    if (frames_.IsTop(frame->id)) notices_.Add({.kind = Kind::kNavigated});
}

void UserWatcher::OnBindingCalled(const std::string& session, const json& params) {
    const FrameInfo* frame = frames_.WithContext(session, params.value("executionContextId", 0));
    if (!frame) return;
    auto snapshot = std::make_shared<const PageSnapshot>(
        PageSnapshot{frame->agent, FieldBlock::FromText(TextOf(params, "payload"))});
    const std::string_view event = snapshot->fields.Text(field::kEvent);
    if (event == "leaving") return notices_.AddLastSnapshot(std::move(snapshot));
    if (event != "entered") return AddUserNotice(session, *frame, std::move(snapshot));
    const FrameInfo* parent = frames_.WithId(frame->parent);
    const std::string index = std::to_string(snapshot->fields.Int(field::kDetail));
    if (parent) agents_.RunLater(parent->agent, "tamrin.enterFrame(" + index + ")");
}

void UserWatcher::AddUserNotice(const std::string& session, const FrameInfo& frame,
                                std::shared_ptr<const PageSnapshot> snapshot) {
    const FieldBlock& fields = snapshot->fields;
    const auto kind = kKinds.find(fields.Text(field::kEvent));
    if (kind == kKinds.end()) return;
    notices_.ForgetLastSnapshots();
    const std::string_view tag = fields.Text(PageSnapshot::Row(0) + field::kTagName);
    const bool onto_frame = tag == "IFRAME" || tag == "FRAME";
    const int detail = fields.Int(field::kDetail);
    Notice notice{.kind = kind->second,
                  .top = frames_.IsTopSession(session),
                  .key = detail,
                  .agent = frame.agent,
                  .snapshots = {std::move(snapshot)}};
    if (notice.kind == Kind::kFocusIn) {
        notices_.AddFocus(std::move(notice), session, onto_frame);
    } else if (notice.kind == Kind::kLeave) {
        const bool stays = detail != 0;  // it is left for another element of its page
        notices_.AddLeave(std::move(notice), session, stays);
    } else {
        notices_.Add(std::move(notice));
    }
}

std::unique_ptr<Connection> UserWatcher::Connect(const std::string& agent, DocumentEvents& events) {
    const bool known = !agents_.Ended() && frames_.WithAgent(agent);
    // The page may be gone already while its events still wait behind the one that has brought it.
    if (!known && agent != TopAgent() && !SnapshotOf(agent)) return nullptr;
    std::erase_if(subscribers_, [](const auto& page) { return page.second.empty(); });
    auto connection = subscribers_[agent].Connect(events);
    if (!agents_.Ended()) SetWatched(true);
    return connection;
}

const Notice* UserWatcher::Next() {
    const bool nobody = std::all_of(subscribers_.begin(), subscribers_.end(),
                                    [](const auto& page) { return page.second.empty(); });
    if (nobody && !agents_.Ended()) SetWatched(false);
    current_ = notices_.Next();
    return current();
}

const PageSnapshot* UserWatcher::SnapshotOf(std::string_view agent) const {
    if (!current_) return nullptr;
    for (const auto& snapshot : current_->snapshots) {
        if (snapshot->agent == agent) return snapshot.get();
    }
    return nullptr;
}

std::string UserWatcher::TopAgent() const {
    if (current_ && current_->kind != Kind::kQuit) return current_->top_agent;
    return agents_.Ended() ? std::string() : frames_.Top().agent;
}

void UserWatcher::Deliver(const Notice& notice) {
    const auto page = subscribers_.find(notice.agent);
    if (page == subscribers_.end()) return;
    // A copy: a handler may subscribe to other pages.
    const Subscribers<DocumentEvents> subscribers = page->second;
    subscribers.ForEach([&](DocumentEvents& events) {
        switch (notice.kind) {
            case Kind::kClick:
                return events.onclick();
            case Kind::kFocusIn:
                return events.onfocusin();
            case Kind::kLeave:
                return events.onbeforedeactivate();
            case Kind::kKeyPress:
                return events.onkeypress(notice.key);
            case Kind::kSubmit:
                return events.onsubmit();
            default:
                return;
        }
    });
}

}  // namespace tamrin
