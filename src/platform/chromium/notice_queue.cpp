#include "platform/chromium/notice_queue.h"

#include <algorithm>
#include <utility>

namespace tamrin {
namespace {

// How long a notice waits at most. Sessions lag behind each other by some 10 ms, on a busy computer
// by more; a page that leaves tells its last moment within a round trip, unless it hangs.
constexpr std::uint32_t kWaitMs = 200;

}  // namespace

void NoticeQueue::Add(Notice notice) {
    if (notice.kind == Notice::Kind::kNavigated) {
        // Nothing has the focus in a page that has just come.
        focus_session_.clear();
        in_frame_ = false;
    }
    waiting_.push_back({.notice = std::move(notice)});
}

void NoticeQueue::AddFocus(Notice notice, const std::string& session, bool onto_frame,
                           std::uint32_t tick) {
    Entry entry{.notice = std::move(notice), .session = session, .tick = tick};
    for (Entry& other : waiting_) {
        // What this session had left it would have told before.
        if (other.awaited_leave == session) other.awaited_leave.clear();
    }
    const auto late = std::find_if(waiting_.begin(), waiting_.end(), [&](const Entry& other) {
        return other.awaits_frame && other.session != session;
    });
    if (onto_frame && late != waiting_.end()) {
        late->awaits_frame = false;
        entry.awaited_leave = std::exchange(late->awaited_leave, {});
        waiting_.insert(late, std::move(entry));
        return;
    }
    const bool elsewhere = focus_session_ != session;
    if (elsewhere) entry.awaited_leave = focus_session_;
    entry.awaits_frame = elsewhere && !entry.notice.top && !in_frame_;
    waiting_.push_back(std::move(entry));
    focus_session_ = onto_frame ? std::string() : session;
    in_frame_ = onto_frame;
}

void NoticeQueue::AddLeave(Notice notice, const std::string& session, bool stays) {
    const auto late = std::find_if(waiting_.begin(), waiting_.end(), [&](const Entry& other) {
        return other.awaited_leave == session;
    });
    if (late != waiting_.end()) {
        late->awaited_leave.clear();
    } else if (focus_session_.empty() || focus_session_ == session) {
        focus_session_ = stays ? session : std::string();
    }
    waiting_.insert(late, {.notice = std::move(notice)});
}

void NoticeQueue::AddLastMoment(std::shared_ptr<const PageMoment> moment) {
    for (Entry& entry : waiting_) {
        if (!entry.awaits_moment) continue;
        entry.awaits_moment = moment->agent != entry.notice.agent;
        entry.notice.moments.push_back(std::move(moment));
        return;
    }
    std::erase_if(last_moments_, [&](const auto& old) { return old->agent == moment->agent; });
    last_moments_.push_back(std::move(moment));
}

void NoticeQueue::AddNavigation(Notice notice, bool may_wait, std::uint32_t tick) {
    if (!notice.top) {
        const auto own =
            std::find_if(last_moments_.begin(), last_moments_.end(),
                         [&](const auto& moment) { return moment->agent == notice.agent; });
        if (own == last_moments_.end() || !(*own)->HadFocus()) return;
        notice.moments.push_back(std::move(*own));
        last_moments_.erase(own);
        return Add(std::move(notice));
    }
    notice.moments = std::exchange(last_moments_, {});
    const bool waits = may_wait && notice.moments.empty();
    waiting_.push_back({.notice = std::move(notice), .tick = tick, .awaits_moment = waits});
}

void NoticeQueue::EndNavigationWait() {
    for (Entry& entry : waiting_) entry.awaits_moment = false;
}

std::optional<Notice> NoticeQueue::Next(std::uint32_t tick) {
    if (waiting_.empty()) return std::nullopt;
    Entry& first = waiting_.front();
    if (first.Waits() && tick - first.tick < kWaitMs) return std::nullopt;
    Notice notice = std::move(first.notice);
    waiting_.pop_front();
    return notice;
}

}  // namespace tamrin
