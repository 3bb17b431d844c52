#include "conformance/back_end.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"

namespace tamrin::conformance {
namespace {

// No window covers the work of who runs the tests, unless TAMRIN_SHOW_BROWSER asks for one.
class QuietProcesses : public PosixProcesses {
public:
    bool HasDisplay() const override {
        return !Environment("TAMRIN_SHOW_BROWSER").empty() && PosixProcesses::HasDisplay();
    }
};

class ChromiumBackEnd : public BackEnd {
public:
    ChromiumBackEnd() {
        clock_.AddSource([this] { launcher_.DeliverEvents(); });
    }

    BrowserLauncher& launcher() override { return launcher_; }
    Clock& clock() override { return clock_; }
    std::uint64_t RoundTrips() override { return launcher_.RoundTrips(); }

private:
    QuietProcesses processes_;
    PosixFiles files_;
    SystemClock clock_;
    ChromiumLauncher launcher_{processes_, files_, clock_, {}};
};

}  // namespace

std::unique_ptr<BackEnd> MakeBackEnd() { return std::make_unique<ChromiumBackEnd>(); }

}  // namespace tamrin::conformance
