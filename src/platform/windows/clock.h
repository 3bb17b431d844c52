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

    // Adds a source of events, such as a browser, that is called in every DoEvents. It handles what
    // has arrived and returns at once.
    void AddSource(std::function<void()> source) { sources_.push_back(std::move(source)); }

    std::uint32_t TickCount() const override;
    std::string TimeStamp() const override;
    void Sleep(int milliseconds) override;
    void DoEvents() override;

    // Sleeps until there is an event, then handles all that have arrived. Returns after at most 50
    // ms if there are sources: they cannot wake this thread.
    void WaitForEvents();

private:
    std::vector<std::function<void()>> sources_;
};

}  // namespace tamrin
