#pragma once

#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/browser.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/chromium/notice_queue.h"
#include "platform/chromium/page_agents.h"
#include "platform/subscribers.h"

namespace tamrin {

// Reports what the user does in the pages of a tab to those who subscribed. The pages are watched
// while somebody has subscribed to one of them.
class UserWatcher {
public:
    // `holds_frames`: frames of other sites always wait for their page agent before they run their
    // scripts, not only while the pages are watched.
    UserWatcher(DevTools& devtools, const FrameTracker& frames, PageAgents& agents,
                NoticeQueue& notices, bool holds_frames);

    static const EventHandlers<UserWatcher>& Handlers();

    // Subscribes to the events of the page with that agent. Null when the page is gone.
    std::unique_ptr<Connection> Connect(const std::string& agent, DocumentEvents& events);

    bool Watched() const { return watched_; }
    void SetWatched(bool watched);
    // Lets the agents of a session report, if the pages are watched.
    void Bind(const std::string& session);
    // Has the browser attach to the frames of other sites in a session's pages.
    void AttachFrames(const std::string& session);

    // Goes on to the next notice, in order, and returns it; null when there is none. It is the
    // current one until the next call.
    const Notice* Next();
    const Notice* current() const { return current_ ? &*current_ : nullptr; }
    // The snapshot that the current notice brings of the page with that agent; null when it brings
    // none.
    const PageSnapshot* SnapshotOf(std::string_view agent) const;
    // The agent of the top page; while a notice is delivered, of the top page when it happened. ""
    // when there is none.
    std::string TopAgent() const;

    // Calls the subscribers of the notice's page.
    void Deliver(const Notice& notice);

private:
    void OnStartedNavigating(const std::string& session, const nlohmann::json& params);
    void OnFrameNavigated(const std::string& session, const nlohmann::json& params);
    void OnDocumentOpened(const std::string& session, const nlohmann::json& params);
    void OnContextCreated(const std::string& session, const nlohmann::json& params);
    void OnBindingCalled(const std::string& session, const nlohmann::json& params);

    void WatchAgain(const std::string& session);
    void AddUserNotice(const std::string& session, const FrameInfo& frame,
                       std::shared_ptr<const PageSnapshot> snapshot);

    DevTools& devtools_;
    const FrameTracker& frames_;
    PageAgents& agents_;
    NoticeQueue& notices_;
    const bool holds_frames_;
    std::optional<Notice> current_;
    std::map<std::string, Subscribers<DocumentEvents>> subscribers_;  // by agent
    bool watched_ = false;
};

}  // namespace tamrin
