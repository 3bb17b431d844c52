#include "platform/headless/virtual_clock.h"

#include <stdexcept>

namespace tamrin {
namespace {

constexpr int kMostCallsWithoutEvents = 10000;
constexpr std::uint64_t kMostRounds = 20000000;

}  // namespace

std::uint32_t VirtualClock::TickCount() const {
    if (++calls_without_events_ > kMostCallsWithoutEvents) {
        throw std::runtime_error("a loop waits without handling events");
    }
    return static_cast<std::uint32_t>(now_);
}

void VirtualClock::Sleep(int milliseconds) {
    if (++calls_without_events_ > kMostCallsWithoutEvents) {
        throw std::runtime_error("a loop sleeps without handling events");
    }
    if (milliseconds > 0) now_ += static_cast<std::uint64_t>(milliseconds);
}

void VirtualClock::DoEvents() {
    calls_without_events_ = 0;
    if (++rounds_ > kMostRounds) throw std::runtime_error("a loop handles events for ever");
    while (!actions_.empty() && actions_.begin()->first <= Elapsed()) {
        const auto action = std::move(actions_.begin()->second);
        actions_.erase(actions_.begin());
        action();
    }
    for (std::size_t i = 0; i < sources_.size(); ++i) sources_[i]();
}

void VirtualClock::At(std::uint64_t milliseconds, std::function<void()> action) {
    actions_.emplace(milliseconds, std::move(action));
}

}  // namespace tamrin
