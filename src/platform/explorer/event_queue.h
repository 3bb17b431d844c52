#pragma once

#include <deque>
#include <functional>
#include <utility>

namespace tamrin {

// What a browser has told, on its way to the program. The browser waits for each of its events to
// return, and an event may come inside a call of this program's; so events are only noted when they
// come, and told when the program handles its events.
class EventQueue {
public:
    void Add(std::function<void()> tell) { waiting_.push_back(std::move(tell)); }

    // Tells what has come, in order. Does nothing while something is being told: what comes later
    // waits for the handler.
    void Deliver() {
        if (telling_) return;
        const Telling telling(telling_);
        while (!waiting_.empty()) {
            const auto tell = std::move(waiting_.front());
            waiting_.pop_front();
            tell();
        }
    }

private:
    // Ends the telling also where a handler throws.
    class Telling {
    public:
        explicit Telling(bool& flag) : flag_(flag) { flag_ = true; }
        ~Telling() { flag_ = false; }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

    private:
        bool& flag_;
    };

    std::deque<std::function<void()>> waiting_;
    bool telling_ = false;
};

}  // namespace tamrin
