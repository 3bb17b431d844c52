#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace tamrin {

// Windows' time and this thread's message queue.
class WindowsClock : public Clock {
public:
    WindowsClock();
    ~WindowsClock() override;
    WindowsClock(const WindowsClock&) = delete;
    WindowsClock& operator=(const WindowsClock&) = delete;

    // Adds something that is to be asked for its events in every DoEvents, such as a browser. It
    // handles what has arrived and returns at once.
    void AddSource(std::function<void()> source) { sources_.push_back(std::move(source)); }

    std::uint32_t TickCount() const override;
    std::string TimeStamp() const override;
    void Sleep(int milliseconds) override;
    void DoEvents() override;

    // Sleeps until there is an event, then handles all that have arrived. Returns after a short
    // time in any case, for a source cannot wake this thread.
    void WaitForEvents();

private:
    std::vector<std::function<void()>> sources_;
};

}  // namespace tamrin
