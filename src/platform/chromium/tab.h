#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/browser.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/field_block.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/chromium/load_tracker.h"
#include "platform/chromium/notice_queue.h"
#include "platform/chromium/outline.h"
#include "platform/chromium/page_dialog.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/subscribers.h"

namespace tamrin {

// Where the top page's viewport stands on the screen: its corner in CSS pixels of the screen, and
// how many screen pixels one of them is.
struct Viewport {
    double left = 0;
    double top = 0;
    double scale = 1;
};

// What a page agent answered, or why it did not.
struct AgentAnswer {
    FieldBlock fields;
    DevToolsReply::End end = DevToolsReply::End::kNoBrowser;

    explicit operator bool() const { return static_cast<bool>(fields); }
};

// One tab of the browser, over the DevTools protocol: its sessions, its frames, how far it has
// loaded, and the dialog box that its page shows. Every call answers empty at once when the tab is
// gone, its page hangs, or a dialog box holds its scripts up.
class Tab : public std::enable_shared_from_this<Tab> {
public:
    // Whose tab it is. The program's own feels in front also while the person works in other
    // windows; a person's own is left as it is.
    enum class Owner { kProgram, kUser };

    Tab(std::shared_ptr<DevTools> devtools, const Clock& clock, const Files& files,
        std::string target, std::string session, Owner owner = Owner::kProgram);

    // Lets go of the tab; its window stays open.
    ~Tab();

    Tab(const Tab&) = delete;
    Tab& operator=(const Tab&) = delete;

    // Sets the tab up. One round trip; false when the tab is gone.
    bool Open();
    // The same without waiting, for a tab to be opened later: what it tells of itself comes when it
    // comes.
    void BeginToOpen();

    bool Alive() const { return alive_; }
    bool Busy() const;
    int ReadyState() const { return alive_ ? loads_.ReadyState() : 0; }
    const FrameTracker& frames() const { return frames_; }
    const std::string& target() const { return target_; }
    const Files& files() const { return files_; }

    // The dialog box that the page shows, null when there is none.
    PageDialog* dialog() { return dialog_ ? &*dialog_ : nullptr; }
    // Answers it as it was told by its keys.
    void AnswerDialog();

    // These do not wait.
    void Navigate(const std::string& url);
    void Reload();
    void RunInPage(const std::string& script);
    void Close();
    void BringToFront();
    void SetPlace(const WindowPlace& place);
    // How the window stands, in one round trip.
    WindowState State();
    // The browser's number of the window.
    int window() const { return window_; }
    void Post(std::string_view method, const nlohmann::json& params);

    // Goes back (-1) or forward (1) in the tab's history; nothing happens at its ends. One round
    // trip.
    void GoThroughHistory(int steps);

    // Asks the page agent of a context. `gesture` runs it as if the user had just acted, which
    // browsers ask for before a page may open windows.
    AgentAnswer Run(const std::string& agent, std::string expression, bool gesture = false);
    // The same of several at once, in one round trip.
    std::vector<AgentAnswer> RunAll(
        const std::vector<std::pair<std::string, std::string>>& questions);
    // Asks without waiting, also while a dialog box is open; the page acts on it when it can.
    void RunLater(const std::string& agent, const std::string& expression);
    // Calls a method of the protocol for the top page, or for the session of an agent.
    DevToolsReply Call(std::string_view method, const nlohmann::json& params,
                       const std::string& agent = {});
    // Sends input events in one go and waits until the page has handled them and told what came of
    // them. False when one of them could not be sent.
    bool Enter(const std::vector<std::pair<std::string, nlohmann::json>>& calls);

    // Outlines an element of the page with that agent for about two seconds, by its id of the
    // protocol; EndOutline takes it away in time. Neither waits.
    void ShowOutline(const std::string& agent, const std::string& object);
    void EndOutline() { outline_.EndWhenOver(*devtools_, frames_, clock_.TickCount()); }

    // A number that grows whenever something may have changed in the pages: after every write,
    // every input, and whenever events were handled. What was read before is then out of date.
    std::uint64_t moment() const { return moment_; }
    void NextMoment() { ++moment_; }

    Viewport viewport() const { return viewport_; }
    void SetViewport(const Viewport& viewport) { viewport_ = viewport; }

    // The frame in which onclick was fired last: the next lookup in another one drops the marks
    // that the agent there keeps for the click to follow.
    void MarkFired(const std::string& agent) { fired_in_ = agent; }
    void BeginLookup(const std::string& agent);

    // Subscribes to the events of the page with that agent.
    std::unique_ptr<Connection> Connect(const std::string& agent, DocumentEvents& events);

    // Goes on to the next thing that happened, in order, and answers it; null when there is none.
    // It is the current one until the next call.
    const Notice* NextNotice();
    // Waits for the pages to send their notices of what their user has done until now (one round
    // trip), and answers whether none is left for NextNotice.
    bool AllDelivered();
    const Notice* current() const { return current_ ? &*current_ : nullptr; }
    // What the current notice tells of the page with that agent; null when it tells nothing.
    const PageMoment* MomentOf(std::string_view agent) const;
    // The top page: while a notice is told, that of the moment when it happened. "" when there is
    // none.
    std::string TopAgent() const;
    // Tells those who subscribed to it of something in a page.
    void Tell(const Notice& notice);

    // Whether the pages tell what the user does: while somebody has subscribed to one of them.
    bool Watched() const { return watched_; }

    // Events, handed in by the owner of the connection.
    static bool Handles(std::string_view method);
    bool OwnsSession(std::string_view session) const;
    void OnEvent(const std::string& session, std::string_view method, const nlohmann::json& params);
    // The tab was closed, its page crashed, or the browser ended.
    void OnGone();

private:
    friend struct TabEvents;

    // The function by which page agents tell what the user does.
    static constexpr const char* kTell = "tamrinTell";

    void SetUp(const std::string& session);
    void AttachFrames(const std::string& session);
    // Lets the agents of a session call the program.
    void Bind(const std::string& session);
    void SetWatched(bool watched);
    void WatchAgain(const std::string& session);
    void OnTold(const std::string& session, int context, const std::string& payload);
    void AddNotice(Notice notice);
    Notice WithTop(Notice notice) const;
    // A frame is about to be navigated. While a page is being replaced it answers nothing: who
    // waits for it to settle need not wait on.
    void OnRequested(const std::string& frame);
    void OnStartedNavigating(const std::string& frame, const std::string& url);
    void OnDialogOpening(const std::string& session, const nlohmann::json& params);
    void OnDialogClosed(const nlohmann::json& params);
    void OnFrameNavigated(const std::string& session, const nlohmann::json& params);
    void OnAttached(const nlohmann::json& params);
    void OnNavigateReply(const std::string& url, const DevToolsReply& reply);
    void OnComplete();

    // The name of a frame in `loads_`.
    std::string_view LoadName(const std::string& frame) const;
    bool CanRun() const;
    int BeginRun(const std::string& agent, std::string expression, bool gesture);
    std::vector<DevToolsReply> Await(const std::vector<int>& calls);
    // Waits until the page has told what came of input. What input does is not told with its reply,
    // but by the page, and in order only with other answers of the page.
    void Settle();
    void OnHung(DevToolsReply::End why);
    void StopScripts();

    std::shared_ptr<DevTools> devtools_;
    const Clock& clock_;
    const Files& files_;
    const std::string target_;
    const Owner owner_;
    const std::string world_;            // that of the page agents; no other program's is called so
    std::vector<std::string> sessions_;  // the first is the top page's
    FrameTracker frames_;
    LoadTracker loads_;
    std::optional<PageDialog> dialog_;
    NoticeQueue notices_;
    std::optional<Notice> current_;
    std::map<std::string, Subscribers<DocumentEvents>> subscribers_;  // by agent
    bool watched_ = false;
    Outline outline_;
    Viewport viewport_;
    int window_ = 0;
    std::uint64_t moment_ = 0;
    std::string fired_in_;
    std::string error_url_;  // what the browser's page about a failure stands for
    bool alive_ = true;
    bool opening_ = false;
    bool hung_ = false;
    bool asking_why_ = false;  // a page could not be opened
    bool settling_ = false;
};

}  // namespace tamrin
