#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/chromium/field_block.h"

namespace tamrin {

// A page as it was at an event: what its agent told of the active element, its parent, its form and
// the form's default button.
struct PageMoment {
    // What precedes the rows of these (ElementList::Kind::kMoment): the kind of the event, a key's
    // code or what else is told of it by a number, the page's address, and whether the page had the
    // focus.
    static constexpr std::size_t kHeader = 4;

    std::string agent;
    FieldBlock fields;

    std::string Url() const { return std::string(fields.Text(2)); }
    bool HadFocus() const { return !fields.Text(3).empty(); }
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
    std::vector<std::shared_ptr<const PageMoment>> moments = {};
    // The top page when it happened.
    std::string top_agent = {};
    std::string top_url = {};
};

// The notices of a tab on their way to the program. Each session of a tab tells in order, but not
// one session in order with another, and a navigation may be told before the page that is left has
// told its last moment. So some notices wait a little for what belongs before or with them, and all
// behind them too. Every tick is a Clock::TickCount.
class NoticeQueue {
public:
    void Add(Notice notice);

    // The focus has come to an element, or when `onto_frame` into a frame, as that session tells.
    void AddFocus(Notice notice, const std::string& session, bool onto_frame, std::uint32_t tick);
    // An element is left, for another one of its page when `stays`.
    void AddLeave(Notice notice, const std::string& session, bool stays);

    // A page is about to be left; this is its last moment, unless the user stays.
    void AddLastMoment(std::shared_ptr<const PageMoment> moment);
    // The user stayed, or acts on.
    void ForgetLastMoments() { last_moments_.clear(); }
    // A navigation begins, of the frame with that agent. It brings the last moments with it, of all
    // pages when it is the top frame; where there is none, it may wait for it. That of another
    // frame is of no interest when the user was not there.
    void AddNavigation(Notice notice, bool may_wait, std::uint32_t tick);
    // No last moment comes any more.
    void EndNavigationWait();

    bool Empty() const { return waiting_.empty(); }

    // The next notice whose time has come.
    std::optional<Notice> Next(std::uint32_t tick);

private:
    struct Entry {
        Notice notice;
        std::string session = {};
        std::uint32_t tick = 0;
        std::string awaited_leave = {};  // the session whose element is to be left before
        bool awaits_frame = false;       // the focus is to go into the frame before
        bool awaits_moment = false;      // the last moment of the page is to come with it

        bool Waits() const { return !awaited_leave.empty() || awaits_frame || awaits_moment; }
    };

    std::deque<Entry> waiting_;
    std::vector<std::shared_ptr<const PageMoment>> last_moments_;
    std::string focus_session_;  // that of the focused element, "" while there is none
    bool in_frame_ = false;      // the focus went into a frame, whose element has not told of it
};

}  // namespace tamrin
