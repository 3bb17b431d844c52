#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace tamrin {

// A clock that passes only while someone sleeps: waits of minutes take microseconds. A loop that
// never handles events, or never ends, throws instead of hanging.
class VirtualClock : public Clock {
public:
    explicit VirtualClock(std::uint32_t start = 1000000) : start_(start), now_(start) {}

    std::uint32_t TickCount() const override;
    // The same moment always.
    std::string TimeStamp() const override { return "2026-01-02 03:04:05"; }
    void Sleep(int milliseconds) override;
    void DoEvents() override;

    // Runs `action` in the first DoEvents at or after `milliseconds` from the clock's start.
    void At(std::uint64_t milliseconds, std::function<void()> action);

    // Runs `source` in every DoEvents.
    void AddSource(std::function<void()> source) { sources_.push_back(std::move(source)); }

    // Milliseconds since the clock's start.
    std::uint64_t Elapsed() const { return now_ - start_; }

private:
    std::uint64_t start_;
    std::uint64_t now_;
    mutable int calls_without_events_ = 0;
    std::uint64_t rounds_ = 0;
    std::multimap<std::uint64_t, std::function<void()>> actions_;
    std::vector<std::function<void()>> sources_;
};

}  // namespace tamrin
