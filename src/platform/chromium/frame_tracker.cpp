#include "platform/chromium/frame_tracker.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace tamrin {

using nlohmann::json;

FrameTracker::FrameTracker(std::string top, std::string session, std::string world)
    : world_(std::move(world)) {
    frames_.push_back({std::move(top), session});
    sessions_.push_back(std::move(session));
}

const EventHandlers<FrameTracker>& FrameTracker::Handlers() {
    static const EventHandlers<FrameTracker> handlers = {
        {"Target.attachedToTarget", &FrameTracker::OnAttachedToTarget},
        {"Target.detachedFromTarget", &FrameTracker::OnDetachedFromTarget},
        {"Inspector.targetCrashed", &FrameTracker::OnTargetCrashed},
        {"Page.frameAttached", &FrameTracker::OnFrameAttached},
        {"Page.frameDetached", &FrameTracker::OnFrameDetached},
        {"Page.frameNavigated", &FrameTracker::OnFrameNavigated},
        {"Page.navigatedWithinDocument", &FrameTracker::OnNavigatedWithinDocument},
        {"Runtime.executionContextCreated", &FrameTracker::OnContextCreated},
        {"Runtime.executionContextDestroyed", &FrameTracker::OnContextDestroyed},
        {"Runtime.executionContextsCleared", &FrameTracker::OnContextsCleared},
    };
    return handlers;
}

void FrameTracker::OnAttachedToTarget(const std::string& /*session*/, const json& params) {
    sessions_.push_back(TextOf(params, "sessionId"));
}

void FrameTracker::OnDetachedFromTarget(const std::string& /*session*/, const json& params) {
    const std::string gone = TextOf(params, "sessionId");
    if (IsTopSession(gone)) return;
    std::erase(sessions_, gone);
    OnContextsCleared(gone, params);
}

void FrameTracker::OnTargetCrashed(const std::string& session, const json& params) {
    if (!IsTopSession(session)) OnContextsCleared(session, params);
}

void FrameTracker::OnFrameAttached(const std::string& session, const json& params) {
    FrameOf(session, TextOf(params, "frameId")).parent = TextOf(params, "parentFrameId");
}

void FrameTracker::OnFrameDetached(const std::string& /*session*/, const json& params) {
    const std::string id = TextOf(params, "frameId");
    const bool lives_on = TextOf(params, "reason") == "swap";  // in another session
    if (lives_on || IsTop(id)) return;
    RemoveBelow(id);
    std::erase_if(frames_, [&](const FrameInfo& frame) { return frame.id == id; });
}

void FrameTracker::OnFrameNavigated(const std::string& session, const json& params) {
    const json& navigated = params.at("frame");
    const std::string id = TextOf(navigated, "id");
    const std::string parent = TextOf(navigated, "parentId");
    RemoveBelow(id);
    FrameInfo& frame = FrameOf(session, id);
    frame.url = TextOf(navigated, "url") + TextOf(navigated, "urlFragment");
    if (!parent.empty()) frame.parent = parent;
}

void FrameTracker::OnNavigatedWithinDocument(const std::string& /*session*/, const json& params) {
    const std::string id = TextOf(params, "frameId");
    FrameInfo* frame = Find([&](const FrameInfo& other) { return other.id == id; });
    if (frame) frame->url = TextOf(params, "url");
}

void FrameTracker::OnContextCreated(const std::string& session, const json& params) {
    const json& context = params.at("context");
    if (TextOf(context, "name") != world_ || !context.contains("auxData")) return;
    const std::string id = TextOf(context["auxData"], "frameId");
    const FrameInfo* known = WithId(id);
    std::vector<AgentContext> earlier;
    if (known && known->session != session) {
        earlier = known->earlier;
        if (!known->agent.empty()) {
            earlier.push_back({known->session, known->context, known->agent});
        }
    }
    FrameInfo& frame = FrameOf(session, id);
    frame.agent = TextOf(context, "uniqueId");
    frame.context = context.value("id", 0);
    frame.earlier = std::move(earlier);
}

void FrameTracker::OnContextDestroyed(const std::string& session, const json& params) {
    const int context = params.value("executionContextId", 0);
    RemoveAgents(
        [&](const std::string& in, int number) { return in == session && number == context; });
}

void FrameTracker::OnContextsCleared(const std::string& session, const json& /*params*/) {
    RemoveAgents([&](const std::string& in, int) { return in == session; });
}

FrameInfo& FrameTracker::FrameOf(const std::string& session, const std::string& id) {
    FrameInfo* frame = Find([&](const FrameInfo& other) { return other.id == id; });
    if (!frame) return frames_.emplace_back(FrameInfo{id, session});
    if (frame->session != session) {
        frame->session = session;
        frame->agent.clear();
    }
    return *frame;
}

void FrameTracker::RemoveAgents(
    const std::function<bool(const std::string& session, int context)>& gone) {
    for (FrameInfo& frame : frames_) {
        std::erase_if(frame.earlier, [&](const AgentContext& agent) {
            return gone(agent.session, agent.context);
        });
        if (!gone(frame.session, frame.context)) continue;
        frame.agent.clear();
        if (frame.earlier.empty()) continue;
        const AgentContext last = std::move(frame.earlier.back());
        frame.earlier.pop_back();
        frame.session = last.session;
        frame.context = last.context;
        frame.agent = last.agent;
    }
}

void FrameTracker::RemoveBelow(const std::string& id) {
    for (std::size_t i = 1; i < frames_.size();) {
        if (frames_[i].parent != id) {
            ++i;
            continue;
        }
        const std::string child = frames_[i].id;
        frames_.erase(frames_.begin() + static_cast<std::ptrdiff_t>(i));
        RemoveBelow(child);
        i = 1;
    }
}

bool FrameTracker::HasSession(std::string_view session) const {
    return std::find(sessions_.begin(), sessions_.end(), session) != sessions_.end();
}

const std::string& FrameTracker::SessionOf(std::string_view agent) const {
    const FrameInfo* frame = WithAgent(agent);
    return frame ? frame->session : sessions_.front();
}

FrameInfo* FrameTracker::Find(const std::function<bool(const FrameInfo&)>& matches) {
    const auto frame = std::find_if(frames_.begin(), frames_.end(), matches);
    return frame == frames_.end() ? nullptr : &*frame;
}

const FrameInfo* FrameTracker::WithAgent(std::string_view agent) const {
    for (const FrameInfo& frame : frames_) {
        if (!agent.empty() && frame.agent == agent) return &frame;
    }
    return nullptr;
}

const FrameInfo* FrameTracker::WithId(std::string_view id) const {
    for (const FrameInfo& frame : frames_) {
        if (frame.id == id) return &frame;
    }
    return nullptr;
}

const FrameInfo* FrameTracker::WithContext(std::string_view session, int context) const {
    for (const FrameInfo& frame : frames_) {
        if (frame.session == session && frame.context == context && !frame.agent.empty()) {
            return &frame;
        }
    }
    return nullptr;
}

std::vector<const FrameInfo*> FrameTracker::MaybeChildren(const std::string& parent) const {
    std::vector<const FrameInfo*> children;
    for (const FrameInfo& frame : frames_) {
        const bool maybe = frame.parent.empty() || frame.parent == parent;
        if (maybe && !frame.agent.empty() && !IsTop(frame.id)) children.push_back(&frame);
    }
    return children;
}

}  // namespace tamrin
