#pragma once

#include <cstdint>
#include <memory>

#include "platform/browser.h"
#include "platform/clock.h"

namespace tamrin::conformance {

// What a browser back end gives to the suite. The suite itself knows only the platform interfaces:
// whatever passes it can be played on.
class BackEnd {
public:
    virtual ~BackEnd() = default;

    virtual BrowserLauncher& launcher() = 0;

    // Its DoEvents delivers the browser's events.
    virtual Clock& clock() = 0;

    // How often a call has waited for the browser's answer so far.
    virtual std::uint64_t RoundTrips() = 0;
};

// Each back end's test program defines this once. On failure it throws.
std::unique_ptr<BackEnd> MakeBackEnd();

}  // namespace tamrin::conformance
