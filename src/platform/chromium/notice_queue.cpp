#include "platform/chromium/notice_queue.h"

#include <algorithm>
#include <utility>

namespace tamrin {
namespace {

// How long a notice waits at most. Sessions lag behind each other by some 10 ms; a page that leaves
// tells its last moment within a round trip, unless it hangs.
constexpr std::uint32_t kFocusWaitMs = 50;
constexpr std::uint32_t kNavigationWaitMs = 200;

}  // namespace

std::deque<NoticeQueue::Entry>::iterator NoticeQueue::WaitingFocus(const std::string& session) {
    return std::find_if(waiting_.begin(), waiting_.end(), [&](const Entry& entry) {
        return entry.waits && entry.notice.kind == Notice::Kind::kFocusIn &&
               entry.session != session;
    });
}

void NoticeQueue::AddFocus(Notice notice, const std::string& session, bool onto_frame,
                           std::uint32_t tick) {
    if (const auto late = WaitingFocus(session); onto_frame && late != waiting_.end()) {
        late->waits = false;
        waiting_.insert(late, {std::move(notice), session, tick, false});
        return;
    }
    const bool moved = !focus_session_.empty() && focus_session_ != session && !in_frame_;
    waiting_.push_back({std::move(notice), session, tick, moved && !onto_frame});
    focus_session_ = session;
    in_frame_ = onto_frame;
}

void NoticeQueue::AddLeave(Notice notice, const std::string& session) {
    const auto late = WaitingFocus(session);
    // The focus of a frame goes on waiting for the word that it went into the frame.
    if (late != waiting_.end() && late->notice.top) late->waits = false;
    if (late == waiting_.end() && !notice.top) focus_session_.clear();
    waiting_.insert(late, {std::move(notice), session, 0, false});
}

void NoticeQueue::AddLastMoment(std::shared_ptr<const PageMoment> moment) {
    for (Entry& entry : waiting_) {
        if (!entry.waits || entry.notice.kind != Notice::Kind::kBeforeNavigate) continue;
        entry.waits = moment->agent != entry.notice.agent;
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
    waiting_.push_back({std::move(notice), {}, tick, waits});
}

void NoticeQueue::EndNavigationWait() {
    for (Entry& entry : waiting_) {
        if (entry.notice.kind == Notice::Kind::kBeforeNavigate) entry.waits = false;
    }
}

std::optional<Notice> NoticeQueue::Next(std::uint32_t tick) {
    if (waiting_.empty()) return std::nullopt;
    Entry& first = waiting_.front();
    const std::uint32_t limit =
        first.notice.kind == Notice::Kind::kFocusIn ? kFocusWaitMs : kNavigationWaitMs;
    if (first.waits && tick - first.tick < limit) return std::nullopt;
    Notice notice = std::move(first.notice);
    waiting_.pop_front();
    return notice;
}

}  // namespace tamrin
