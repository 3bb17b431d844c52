#pragma once

#include "conformance/suite.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"

namespace tamrin::test {

// The system's time, which a test can put forward.
struct JumpingClock : SystemClock {
    std::uint32_t TickCount() const override { return SystemClock::TickCount() + ahead; }
    void Jump(std::uint32_t milliseconds) { ahead += milliseconds; }
    std::uint32_t ahead = 0;
};

// No window covers the work of who runs the tests, unless TAMRIN_SHOW_BROWSER asks for one.
struct QuietProcesses : PosixProcesses {
    bool HasDisplay() const override {
        return !Environment("TAMRIN_SHOW_BROWSER").empty() && PosixProcesses::HasDisplay();
    }
    std::string MakeTemporaryFolder() override {
        return profile = PosixProcesses::MakeTemporaryFolder();
    }
    std::string profile;  // of the browser that was started last
};

// The ids of the processes of the browser with that profile, its first one first.
std::vector<int> BrowserProcesses(const std::string& profile);

// The browser that the tests share.
struct Rig : conformance::BackEnd {
    Rig() {
        system_clock.AddSource([this] { chromium.DeliverEvents(); });
    }
    BrowserLauncher& launcher() override { return chromium; }
    Clock& clock() override { return system_clock; }
    std::uint64_t RoundTrips() override { return chromium.RoundTrips(); }

    std::function<bool()> on_wait;  // called now and then while a call waits; true stops the call
    QuietProcesses processes;
    PosixFiles files;
    JumpingClock system_clock;
    ChromiumLauncher chromium{processes, files, system_clock, {.stop_requested = [this] {
                                  return on_wait && on_wait();
                              }}};
};

struct ChromiumTest : conformance::Suite {
    Rig& rig() { return dynamic_cast<Rig&>(back_end()); }
    std::optional<std::string> Picture() { return rig().chromium.Picture(); }
};

}  // namespace tamrin::test
