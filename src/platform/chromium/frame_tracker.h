#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/devtools.h"

namespace tamrin {

// The context of a page agent: its id within a session, and its unique one.
struct AgentContext {
    std::string session;
    int context = 0;
    std::string agent;
};

// One frame of a tab; the top page is one, too.
struct FrameInfo {
    std::string id;
    std::string session;   // the DevTools session that answers for its page
    std::string parent{};  // "" for the top frame, and where it is not known
    std::string url{};     // "" where it is not known
    std::string agent{};   // the unique id of the page agent's context; "" while
                           // there is none
    int context = 0;       // the same context's id within its session
    // Agents that another one has replaced and that still exist. A page that moves to a session of
    // its own leaves one in the old session, whose creation may be reported after that of its own;
    // when the current agent goes, the last of these is the frame's again.
    std::vector<AgentContext> earlier{};
};

// The sessions and frames of a tab, and the page agents in them. Pages of other sites live in
// sessions of their own.
class FrameTracker {
public:
    // `top` is the id of the top frame, `session` the tab's session, `world` the name of the
    // isolated world in which the page agents run.
    FrameTracker(std::string top, std::string session, std::string world);

    static const EventHandlers<FrameTracker>& Handlers();

    // The tab's sessions; the first is the top page's.
    const std::vector<std::string>& sessions() const { return sessions_; }
    bool HasSession(std::string_view session) const;
    bool IsTopSession(std::string_view session) const { return session == sessions_.front(); }
    // The session of the frame with that agent; the top page's where there is none.
    const std::string& SessionOf(std::string_view agent) const;
    const std::string& world() const { return world_; }

    const FrameInfo& Top() const { return frames_.front(); }
    bool IsTop(std::string_view id) const { return frames_.front().id == id; }
    // Null when there is none.
    const FrameInfo* WithAgent(std::string_view agent) const;
    const FrameInfo* WithId(std::string_view id) const;
    const FrameInfo* WithContext(std::string_view session, int context) const;

    // The frames with an agent whose parent is that frame or is not known.
    std::vector<const FrameInfo*> MaybeChildren(const std::string& parent) const;
    const std::vector<FrameInfo>& All() const { return frames_; }

private:
    using Params = nlohmann::json;

    void OnAttachedToTarget(const std::string& session, const Params& params);
    void OnDetachedFromTarget(const std::string& session, const Params& params);
    void OnTargetCrashed(const std::string& session, const Params& params);
    void OnFrameAttached(const std::string& session, const Params& params);
    void OnFrameDetached(const std::string& session, const Params& params);
    void OnFrameNavigated(const std::string& session, const Params& params);
    void OnNavigatedWithinDocument(const std::string& session, const Params& params);
    void OnContextCreated(const std::string& session, const Params& params);
    void OnContextDestroyed(const std::string& session, const Params& params);
    void OnContextsCleared(const std::string& session, const Params& params);

    FrameInfo* Find(const std::function<bool(const FrameInfo&)>& matches);
    FrameInfo& FrameOf(const std::string& session, const std::string& id);
    void RemoveAgents(const std::function<bool(const std::string& session, int context)>& gone);
    void RemoveBelow(const std::string& id);

    const std::string world_;
    std::vector<std::string> sessions_;
    std::vector<FrameInfo> frames_;  // the top frame is the first
};

}  // namespace tamrin
