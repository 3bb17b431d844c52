#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace tamrin {

// The system's own time. DoEvents calls every registered source once, in the order in which they
// were registered; a source handles what has arrived at it and returns at once.
class SystemClock : public Clock {
public:
    void AddSource(std::function<void()> source) { sources_.push_back(std::move(source)); }

    std::uint32_t TickCount() const override;
    std::string TimeStamp() const override;
    void Sleep(int milliseconds) override;
    void DoEvents() override;

private:
    std::vector<std::function<void()>> sources_;
};

}  // namespace tamrin
