#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

#include "platform/clock.h"

namespace tamrin::test {

// A clock that advances only while someone sleeps: waits of minutes take microseconds. A loop that
// never handles events throws instead of hanging.
class VirtualClock : public Clock {
public:
    std::uint32_t TickCount() const override {
        const bool hangs = ++calls_without_events_ > 10000;
        if (hangs) throw std::runtime_error("a loop waits without handling events");
        return static_cast<std::uint32_t>(0xFFFFFF00 + now_);  // which soon wraps
    }
    std::string TimeStamp() const override { return "2026-01-02 03:04:05"; }
    void Sleep(int milliseconds) override {
        now_ += static_cast<std::uint64_t>(milliseconds);
        TickCount();
    }
    void DoEvents() override {
        calls_without_events_ = 0;
        while (!actions_.empty() && actions_.begin()->first <= now_) {
            actions_.extract(actions_.begin()).mapped()();
        }
        for (std::size_t i = 0; i < sources_.size(); ++i) sources_[i]();
    }

    // Runs `action` in the first DoEvents when so many milliseconds have passed from now.
    void After(std::uint64_t milliseconds, std::function<void()> action) {
        actions_.emplace(now_ + milliseconds, std::move(action));
    }
    // Handles events every 10 milliseconds for that time.
    void Pass(std::uint64_t milliseconds) {
        for (const auto end = now_ + milliseconds; now_ < end; Sleep(10)) DoEvents();
    }
    // Runs `source` in every DoEvents.
    void AddSource(std::function<void()> source) { sources_.push_back(std::move(source)); }
    // Milliseconds since the clock's start.
    std::uint64_t Elapsed() const { return now_; }

private:
    std::uint64_t now_ = 0;
    mutable int calls_without_events_ = 0;
    std::multimap<std::uint64_t, std::function<void()>> actions_;
    std::vector<std::function<void()>> sources_;
};

}  // namespace tamrin::test
