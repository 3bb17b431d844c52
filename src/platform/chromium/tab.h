#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/browser.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/dialog_tracker.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/chromium/load_tracker.h"
#include "platform/chromium/notice_queue.h"
#include "platform/chromium/page_agents.h"
#include "platform/chromium/user_watcher.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace tamrin {

// Where the top page's viewport stands on the screen: its corner in CSS pixels of the screen, and
// how many screen pixels one of them is.
struct Viewport {
    double left = 0;
    double top = 0;
    double scale = 1;
};

// One tab of the browser, over the DevTools protocol: its window, and the trackers that follow its
// concerns, each from the same events.
class Tab : public std::enable_shared_from_this<Tab> {
public:
    // Whose tab it is. A tab of the program behaves as if it had the focus even while the user
    // works in other windows; a tab of the user is left as it is.
    enum class Owner { kProgram, kUser };

    Tab(std::shared_ptr<DevTools> devtools, const Clock& clock, const Files& files,
        std::string target, const std::string& session, Owner owner = Owner::kProgram);

    // Detaches from the tab; its window stays open.
    ~Tab();

    Tab(const Tab&) = delete;
    Tab& operator=(const Tab&) = delete;

    // Sets the tab up. One round trip; false when the tab is gone.
    bool Open();
    // The same without waiting, for a tab to be opened later.
    void BeginToOpen();

    // A tab of the program no longer behaves as if it had the focus.
    void LeaveToUser();

    const std::string& target() const { return target_; }
    const Files& files() const { return files_; }
    const FrameTracker& frames() const { return frames_; }
    PageAgents& agents() { return agents_; }
    LoadTracker& loads() { return loads_; }
    const DialogTracker& dialogs() const { return dialogs_; }
    UserWatcher& watcher() { return watcher_; }

    bool Alive() const { return !agents_.Ended(); }
    bool closed() const { return closed_; }
    // Whether it loads a page, its page hangs, or a dialog box is open.
    bool Busy() const;
    // As Browser::ReadyState.
    int ReadyState() const { return Alive() ? loads_.ReadyState() : 0; }

    // These do not wait.
    void Navigate(const std::string& url);
    void Close();
    void SetPlace(const WindowPlace& place);
    // How the window stands, in one round trip.
    WindowState State();
    // The browser's number of the window.
    int window() const { return window_; }

    // Sends input events in one go and waits until the page has handled them and reported what came
    // of them. False when one of them could not be sent.
    bool Enter(const std::vector<DevToolsCall>& events);
    // Gives the open dialog box a key, and waits likewise when that closes it.
    void EnterInDialog(const KeyStroke& key);
    // Waits until the pages have reported what their user has done so far (one round trip), and
    // answers whether all of it has been delivered.
    bool AllDelivered();

    // Highlights an element of the page with that agent for about two seconds, by its object id of
    // the protocol, instead of the one before. The browser draws over the page, which cannot see
    // it. EndOutline removes it when its time is over or its page is gone. Neither waits.
    void Outline(const std::string& agent, const std::string& object);
    void EndOutline();

    // A number that grows whenever something may have changed in the pages: after every write,
    // every input, and whenever events were handled. What was read before is then out of date.
    std::uint64_t moment() const { return moment_; }
    void NextMoment() { ++moment_; }

    const Viewport& viewport() const { return viewport_; }
    void SetViewport(const Viewport& viewport) { viewport_ = viewport; }

    // Events, from the owner of the connection. Only those that a tracker reads are needed.
    static bool Reads(std::string_view method);
    void OnEvent(const std::string& session, std::string_view method, const nlohmann::json& params);
    // The tab was closed, or else its page crashed or the browser ended.
    void OnGone(bool closed);

private:
    void SetUp(const std::string& session);
    void Settle();
    void DropOutline();

    std::shared_ptr<DevTools> devtools_;
    const Clock& clock_;
    const Files& files_;
    const std::string target_;
    Owner owner_;
    FrameTracker frames_;
    NoticeQueue notices_;
    PageAgents agents_;
    LoadTracker loads_;
    DialogTracker dialogs_;
    UserWatcher watcher_;
    Viewport viewport_;
    int window_ = 0;
    std::uint64_t moment_ = 0;
    std::string outlined_in_;  // the agent; "" while nothing is highlighted
    std::string outline_session_;
    std::uint32_t outlined_at_ = 0;
    bool opening_ = false;
    bool closed_ = false;
};

}  // namespace tamrin
