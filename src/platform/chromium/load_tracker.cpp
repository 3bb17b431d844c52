#include "platform/chromium/load_tracker.h"

#include <algorithm>

namespace tamrin {
namespace {

// A request that no load follows within this time has come to nothing.
constexpr std::uint32_t kRequestMs = 500;

// A frame may load for as long as its page lives (some pages get their news that way); after this
// time it no longer keeps the tab busy. The top frame does for as long as it takes.
constexpr std::uint32_t kFrameMs = 10000;

}  // namespace

LoadTracker::Load& LoadTracker::Of(std::string_view frame, std::uint32_t tick) {
    const auto load = std::find_if(loads_.begin(), loads_.end(),
                                   [&](const Load& other) { return other.frame == frame; });
    if (load != loads_.end()) return *load;
    return loads_.emplace_back(Load{std::string(frame), tick, false});
}

void LoadTracker::Navigate() {
    ++navigates_;
    ready_state_ = 1;
}

void LoadTracker::NavigateAnswered() {
    --navigates_;
    // An address that is none starts no load at all; then the old page is still there.
    if (navigates_ == 0 && !TopLoads()) ready_state_ = 4;
}

void LoadTracker::Requested(std::string_view frame, std::uint32_t tick) {
    Load& load = Of(frame, tick);
    if (!load.started) load.tick = tick;
}

void LoadTracker::Started(std::string_view frame, std::uint32_t tick) {
    Of(frame, tick) = {std::string(frame), tick, true};
    if (frame.empty()) ready_state_ = 1;
}

void LoadTracker::Navigated(std::string_view frame) {
    if (frame.empty()) ready_state_ = 2;
}

void LoadTracker::Stopped(std::string_view frame) {
    Removed(frame);
    if (frame.empty() && navigates_ == 0) ready_state_ = 4;
}

void LoadTracker::Removed(std::string_view frame) {
    std::erase_if(loads_, [&](const Load& load) { return load.frame == frame; });
}

void LoadTracker::Found(std::string_view state) {
    if (loads_.empty() && navigates_ == 0 && state == "interactive") ready_state_ = 3;
}

void LoadTracker::Refused() {
    std::erase_if(loads_, [](const Load& load) { return !load.started; });
    if (navigates_ == 0 && !TopLoads()) ready_state_ = 4;
}

bool LoadTracker::TopLoads() const {
    return std::any_of(loads_.begin(), loads_.end(),
                       [](const Load& load) { return load.started && load.frame.empty(); });
}

bool LoadTracker::Busy(std::uint32_t tick) const {
    return navigates_ > 0 || std::any_of(loads_.begin(), loads_.end(), [&](const Load& load) {
               const std::uint32_t age = tick - load.tick;
               if (!load.started) return age < kRequestMs;
               return load.frame.empty() || age < kFrameMs;
           });
}

}  // namespace tamrin
