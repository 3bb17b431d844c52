#pragma once

#include <cstdint>
#include <string>

#include "platform/chromium/devtools.h"
#include "platform/chromium/frame_tracker.h"

namespace tamrin {

// Shows the user for a moment where an element stands. The browser draws it over the page, which
// cannot see it, and takes it away with the session when the program ends.
class Outline {
public:
    // Marks the element with that id of the protocol, in a page of that session and agent, instead
    // of the one before. `tick` is now, as Clock::TickCount. Nothing waits.
    void Draw(DevTools& devtools, const std::string& session, const std::string& agent,
              const std::string& object, std::uint32_t tick);

    // Takes it away when its time is over or its page is gone.
    void EndWhenOver(DevTools& devtools, const FrameTracker& frames, std::uint32_t tick);

private:
    void End(DevTools& devtools);

    std::string session_;  // "" while none is shown
    std::string agent_;
    std::uint32_t drawn_at_ = 0;
};

}  // namespace tamrin
