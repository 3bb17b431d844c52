#include "platform/chromium/frame_tracker.h"

#include <algorithm>
#include <utility>

namespace tamrin {

FrameTracker::FrameTracker(std::string top, std::string session) {
    frames_.push_back({std::move(top), std::move(session)});
}

FrameInfo& FrameTracker::Of(const std::string& session, const std::string& id) {
    auto frame = std::find_if(frames_.begin(), frames_.end(),
                              [&](const FrameInfo& other) { return other.id == id; });
    if (frame == frames_.end()) {
        frame = frames_.insert(frames_.end(), FrameInfo{id, session});
    } else if (frame->session != session) {
        frame->session = session;
        frame->agent.clear();
    }
    return *frame;
}

void FrameTracker::Attached(const std::string& session, const std::string& id,
                            const std::string& parent) {
    Of(session, id).parent = parent;
}

void FrameTracker::Detached(const std::string& id, bool swapped) {
    if (swapped || IsTop(id)) return;
    RemoveBelow(id);
    std::erase_if(frames_, [&](const FrameInfo& frame) { return frame.id == id; });
}

void FrameTracker::Navigated(const std::string& session, const std::string& id,
                             const std::string& parent, const std::string& url) {
    RemoveBelow(id);
    FrameInfo& frame = Of(session, id);
    frame.url = url;
    if (!parent.empty()) frame.parent = parent;
}

void FrameTracker::UrlChanged(const std::string& id, const std::string& url) {
    for (FrameInfo& frame : frames_) {
        if (frame.id == id) frame.url = url;
    }
}

void FrameTracker::AgentCame(const std::string& session, const std::string& id,
                             const std::string& agent, int context) {
    const FrameInfo* known = WithId(id);
    std::vector<AgentContext> earlier;
    if (known && known->session != session) {
        earlier = known->earlier;
        if (!known->agent.empty()) {
            earlier.push_back({known->session, known->context, known->agent});
        }
    }
    FrameInfo& frame = Of(session, id);
    frame.agent = agent;
    frame.context = context;
    frame.earlier = std::move(earlier);
}

void FrameTracker::AgentWent(const std::string& session, int context) {
    RemoveAgents(
        [&](const std::string& in, int number) { return in == session && number == context; });
}

void FrameTracker::AgentsWent(const std::string& session) {
    RemoveAgents([&](const std::string& in, int) { return in == session; });
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

}  // namespace tamrin
