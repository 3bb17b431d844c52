#include "conformance/back_end.h"
#include "conformance/quiet_processes.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/system_clock.h"

namespace tamrin::conformance {
namespace {

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
