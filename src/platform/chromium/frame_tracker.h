#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

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
    std::string agent{};   // the unique id of the page agent's context; "" while there is none
    int context = 0;       // the same context's id within its session
    // Agents that a later one has taken the place of and that have not gone yet. A page that comes
    // to a session of its own leaves one in the old session that may be told of behind its own:
    // when that goes, its own is the frame's again.
    std::vector<AgentContext> earlier{};
};

// The frames of a tab and the page agents in them, told from the browser's events. Pages of other
// sites live in sessions of their own.
class FrameTracker {
public:
    // `top` is the id of the top frame.
    FrameTracker(std::string top, std::string session);

    void Attached(const std::string& session, const std::string& id, const std::string& parent);
    // The frame is gone; when it is swapped it lives on in another session.
    void Detached(const std::string& id, bool swapped);
    // A new page came into the frame; the frames of the old page are gone.
    void Navigated(const std::string& session, const std::string& id, const std::string& parent,
                   const std::string& url);
    void UrlChanged(const std::string& id, const std::string& url);

    void AgentCame(const std::string& session, const std::string& id, const std::string& agent,
                   int context);
    void AgentWent(const std::string& session, int context);
    void AgentsWent(const std::string& session);

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
    FrameInfo& Of(const std::string& session, const std::string& id);
    void RemoveAgents(const std::function<bool(const std::string& session, int context)>& gone);
    void RemoveBelow(const std::string& id);

    std::vector<FrameInfo> frames_;  // the top frame is the first
};

}  // namespace tamrin
