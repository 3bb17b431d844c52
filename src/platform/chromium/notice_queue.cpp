#include "platform/chromium/notice_queue.h"

#include <algorithm>
#include <utility>

namespace tamrin {
namespace {

// How long a notice waits at most. Sessions lag behind each other by some 10 ms, on a busy computer
// by more; a page that is left sends its last snapshot within a round trip, unless it hangs.
constexpr std::uint32_t kWaitMs = 200;

}  // namespace

Notice NoticeQueue::Stamped(Notice notice) const {
    if (notice.kind == Notice::Kind::kQuit) return notice;  // there is no page any more
    notice.top_agent = frames_.Top().agent;
    notice.top_url = frames_.Top().url;
    return notice;
}

void NoticeQueue::Add(Notice notice) {
    if (notice.kind == Notice::Kind::kNavigated) {
        // Nothing has the focus in a page that has just come.
        focus_session_.clear();
        in_frame_ = false;
    }
    waiting_.push_back({.notice = Stamped(std::move(notice))});
}

void NoticeQueue::AddFocus(Notice notice, const std::string& session, bool onto_frame) {
    Entry entry{
        .notice = Stamped(std::move(notice)), .session = session, .tick = clock_.TickCount()};
    for (Entry& other : waiting_) {
        // This session reports in order: what it had left, it would have reported before.
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
    waiting_.insert(late, {.notice = Stamped(std::move(notice))});
}

void NoticeQueue::AddLastSnapshot(std::shared_ptr<const PageSnapshot> snapshot) {
    for (Entry& entry : waiting_) {
        if (!entry.awaits_snapshot) continue;
        entry.awaits_snapshot = snapshot->agent != entry.notice.agent;
        entry.notice.snapshots.push_back(std::move(snapshot));
        return;
    }
    std::erase_if(last_snapshots_, [&](const auto& old) { return old->agent == snapshot->agent; });
    last_snapshots_.push_back(std::move(snapshot));
}

void NoticeQueue::AddNavigation(Notice notice, bool may_wait) {
    if (!notice.top) {
        const auto own =
            std::find_if(last_snapshots_.begin(), last_snapshots_.end(),
                         [&](const auto& snapshot) { return snapshot->agent == notice.agent; });
        if (own == last_snapshots_.end() || !(*own)->HadFocus()) return;
        notice.snapshots.push_back(std::move(*own));
        last_snapshots_.erase(own);
        return Add(std::move(notice));
    }
    notice.snapshots = std::exchange(last_snapshots_, {});
    const bool waits = may_wait && notice.snapshots.empty();
    waiting_.push_back({.notice = Stamped(std::move(notice)),
                        .tick = clock_.TickCount(),
                        .awaits_snapshot = waits});
}

void NoticeQueue::EndNavigationWait() {
    for (Entry& entry : waiting_) entry.awaits_snapshot = false;
}

std::optional<Notice> NoticeQueue::Next() {
    if (waiting_.empty()) return std::nullopt;
    Entry& first = waiting_.front();
    if (first.Waits() && clock_.TickCount() - first.tick < kWaitMs) return std::nullopt;
    Notice notice = std::move(first.notice);
    waiting_.pop_front();
    return notice;
}

}  // namespace tamrin
