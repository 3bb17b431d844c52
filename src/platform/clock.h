#pragma once

#include <cstdint>
#include <string>

namespace tamrin {

// Time and the message queue. Everything runs on one thread: browser events, timer ticks and the
// stop command arrive only inside DoEvents, so whoever calls it (or anything that waits) re-reads
// afterwards what may have changed.
class Clock {
public:
    virtual ~Clock() = default;

    // Milliseconds since some fixed moment. 32 bits: it wraps after 49.7 days, so subtract two
    // ticks and never compare them.
    virtual std::uint32_t TickCount() const = 0;

    // The local date and time, as a log shows it: "2026-11-22 09:30:05".
    virtual std::string TimeStamp() const = 0;

    // Blocks for `milliseconds` and handles no events.
    virtual void Sleep(int milliseconds) = 0;

    // Handles every event that has arrived, and returns without waiting for more.
    virtual void DoEvents() = 0;
};

}  // namespace tamrin
