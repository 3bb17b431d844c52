#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/chromium/field_block.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/clock.h"

namespace tamrin {

// A page as it was at an event: the active element, its parent, its form and the form's default
// button, as the page agent reports them.
struct PageSnapshot {
    std::string agent;
    FieldBlock fields;

    std::string Url() const { return std::string(fields.Text(field::kAddress)); }
    bool HadFocus() const { return !fields.Text(field::kHadFocus).empty(); }
    // Where the row of an element begins: 0 the active one, 1 its parent, 2 its form, 3 the form's
    // default button.
    static constexpr std::size_t kElements = 4;
    static std::size_t Row(std::size_t element) {
        return field::kEventRows + element * field::kEventRow;
    }
};

// What happened in a tab, in the terms of BrowserEvents and DocumentEvents.
struct Notice {
    enum class Kind {
        kComplete,
        kBeforeNavigate,
        kNavigated,
        kError,
        kNotResponding,
        kQuit,
        // Of the page `agent`:
        kClick,
        kFocusIn,
        kLeave,
        kKeyPress,
        kSubmit,
    };
    Kind kind;
    bool top = true;  // whether it is about the top frame, or one of its session
    std::string url = {};
    std::string reason = {};
    int key = 0;
    std::string agent = {};
    std::vector<std::shared_ptr<const PageSnapshot>> snapshots = {};
    // The top page when it happened.
    std::string top_agent = {};
    std::string top_url = {};
};

// The notices of a tab on their way to the program. Each session reports its events in order, but
// two sessions are not in order with each other, and a navigation may be reported before the page
// that is left has sent its last snapshot. So some notices wait a little for those that belong
// before or with them, and the notices behind them wait too.
class NoticeQueue {
public:
    NoticeQueue(const FrameTracker& frames, const Clock& clock) : frames_(frames), clock_(clock) {}

    void Add(Notice notice);

    // The focus has come to an element, or when `onto_frame` into a frame, as that session reports.
    void AddFocus(Notice notice, const std::string& session, bool onto_frame);
    // An element is left, for another one of its page when `stays`.
    void AddLeave(Notice notice, const std::string& session, bool stays);

    // A page is about to be left; this is its last snapshot, unless the user stays.
    void AddLastSnapshot(std::shared_ptr<const PageSnapshot> snapshot);
    // The user stayed, or goes on acting.
    void ForgetLastSnapshots() { last_snapshots_.clear(); }
    // A navigation begins, of the frame with that agent. It takes the last snapshots along, for the
    // top frame those of all pages; where there is none, it may wait for it. A navigation of
    // another frame is dropped unless the user was there.
    void AddNavigation(Notice notice, bool may_wait);
    // No last snapshot comes any more.
    void EndNavigationWait();

    bool Empty() const { return waiting_.empty(); }

    // The next notice whose time has come.
    std::optional<Notice> Next();

private:
    struct Entry {
        Notice notice;
        std::string session = {};
        std::uint32_t tick = 0;
        std::string awaited_leave = {};  // the session whose element is to be left before
        bool awaits_frame = false;       // the focus is to go into the frame before
        bool awaits_snapshot = false;    // the last snapshot of the page is to come with it

        bool Waits() const { return !awaited_leave.empty() || awaits_frame || awaits_snapshot; }
    };

    // Notes which page is the top one now.
    Notice Stamped(Notice notice) const;

    const FrameTracker& frames_;
    const Clock& clock_;

    std::deque<Entry> waiting_;
    std::vector<std::shared_ptr<const PageSnapshot>> last_snapshots_;
    std::string focus_session_;  // that of the focused element, "" while there is none
    bool in_frame_ = false;      // the focus went into a frame; no element there has
                                 // reported it yet
};

}  // namespace tamrin
