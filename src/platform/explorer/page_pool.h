#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

class ExplorerDocument;

// Events on their way from the browser to the program. The browser waits until its event returns,
// and an event can arrive during a call of this program; so events are only queued when they
// arrive, and their handlers run when the program handles its events.
class EventQueue {
public:
    void Add(std::function<void()> handler) { waiting_.push_back(std::move(handler)); }

    // Runs the handlers in order. Does nothing when called from a handler: the later events wait
    // until it returns.
    void Deliver() {
        if (running_) return;
        const Running running(running_);
        while (!waiting_.empty()) {
            const auto handler = std::move(waiting_.front());
            waiting_.pop_front();
            handler();
        }
    }

    // Drops the events that wait. They hold their pages, and these the queue.
    void Clear() { const auto dropped = std::exchange(waiting_, {}); }

private:
    // Resets the flag also when a handler throws.
    class Running {
    public:
        explicit Running(bool& flag) : flag_(flag) { flag_ = true; }
        ~Running() { flag_ = false; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        bool& flag_;
    };

    std::deque<std::function<void()>> waiting_;
    bool running_ = false;
};

// The pages of one browser window, and what they share. A page is represented by the same object
// for as long as somebody holds it, so that every handle sees the snapshot of an event.
class PagePool : public std::enable_shared_from_this<PagePool> {
public:
    explicit PagePool(ComCalls& calls) : calls_(calls) {}

    ComCalls& calls() const { return calls_; }
    EventQueue& events() { return events_; }

    // The page of a document object; null for null and for what is not an HTML document.
    std::shared_ptr<ExplorerDocument> Page(ComPtr<IDispatch> document);

    // The window shows this page now: all others become empty. Null when the window is gone.
    void KeepOnly(IUnknown* document);

    // A frame shows another page: the pages that no frame shows any more become empty.
    void DropLeftFrames();

    // The pages that somebody holds.
    std::vector<std::shared_ptr<ExplorerDocument>> Pages() const;

private:
    ComCalls& calls_;
    EventQueue events_;
    std::map<IUnknown*, std::weak_ptr<ExplorerDocument>> pages_;
};

}  // namespace tamrin
