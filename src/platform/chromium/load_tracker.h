#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/devtools.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/chromium/notice_queue.h"
#include "platform/chromium/page_agents.h"
#include "platform/clock.h"

namespace tamrin {

// Navigates a tab and knows from the browser's events whether the tab is busy and how far its page
// has loaded.
//
// A tab is busy from the moment when it is told to navigate, or its page asks for it, until the
// load has stopped. Loads of frames count, too: in a page made of frames a click often loads
// another frame, and the next record must wait for it.
class LoadTracker {
public:
    LoadTracker(DevTools& devtools, const Clock& clock, const FrameTracker& frames,
                PageAgents& agents, NoticeQueue& notices);

    static const EventHandlers<LoadTracker>& Handlers();

    // Whether a Page.frameStartedNavigating leads to another document, not to another place in the
    // same one.
    static bool LeavesDocument(const nlohmann::json& params);

    // These do not wait.
    void Navigate(const std::string& url);
    void Reload();
    // Goes back (-1) or forward (1) in the tab's history; nothing happens at its ends. One round
    // trip.
    void GoThroughHistory(int steps);

    // How far the page had loaded when the program attached to it, as its document.readyState says.
    void Found(std::string_view state);

    // The user refused to leave the page: the navigation that it asked for does not come.
    void Refused();

    bool Busy() const;
    // As Browser::ReadyState.
    int ReadyState() const { return ready_state_; }

private:
    struct Load {
        std::string frame;
        std::uint32_t tick;
        bool started;  // false: only asked for
    };

    void OnRequestedNavigation(const std::string& session, const nlohmann::json& params);
    void OnScheduledNavigation(const std::string& session, const nlohmann::json& params);
    void OnStartedNavigating(const std::string& session, const nlohmann::json& params);
    void OnStartedLoading(const std::string& session, const nlohmann::json& params);
    void OnStoppedLoading(const std::string& session, const nlohmann::json& params);
    void OnFrameNavigated(const std::string& session, const nlohmann::json& params);
    void OnFrameDetached(const std::string& session, const nlohmann::json& params);
    void OnDomContent(const std::string& session, const nlohmann::json& params);
    void OnLoad(const std::string& session, const nlohmann::json& params);

    void Requested(const std::string& frame);
    void Complete();
    void OnNavigateReply(const std::string& url, const DevToolsReply& reply);
    void OnErrorCode(const std::string& url, const std::string& reason);
    void Remove(std::string_view frame);
    bool TopLoads() const;

    DevTools& devtools_;
    const Clock& clock_;
    const FrameTracker& frames_;
    PageAgents& agents_;
    NoticeQueue& notices_;
    std::vector<Load> loads_;
    int navigates_ = 0;  // not yet answered
    int ready_state_ = 4;
    std::string error_url_;    // the address that failed while the browser's error
                               // page is shown
    bool asking_why_ = false;  // the error page was asked for its reason
};

}  // namespace tamrin
