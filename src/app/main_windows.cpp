// The Windows program: the main window on the screen.

#include <ostream>
#include <string>

#include "app/console_report.h"
#include "app/frm_ie_auto.h"
#include "app/profile_folder.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/chromium/launcher.h"
#include "platform/windows/clock.h"
#include "platform/windows/entry.h"
#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "platform/windows/window_system.h"

namespace tamrin {

// Answers how the run of the command line ended; a program that was started without one played
// nothing, and ends well.
int Main(const std::string& command_line) {
    WindowsFiles files;
    WindowsTextCodec codec;
    WindowsProcesses processes;
    WindowsClock clock;
    WindowsWindowSystem windows(clock);
    Globals globals;
    ChromiumLauncher launcher(
        processes, files, clock,
        {.executable = [&] { return globals.options.browser_path; }, .stop_requested = nullptr});
    ChromiumWindows browsers(processes, files, clock,
                             {.executable = [&] { return globals.options.browser_path; },
                              .debug_address = [&] { return globals.options.debug_address; },
                              .profile_folder = ProfileFolder(processes, files)});
    frmIeAuto window(globals, {windows, clock, files, codec, processes, launcher, browsers});
    std::ostream nowhere(nullptr);
    ConsoleReport report(nowhere);
    window.onRecordDone = [&](const RecordReport& record) { report.Record(record); };
    clock.AddSource([&] { launcher.DeliverEvents(); });
    clock.AddSource([&] { browsers.DeliverEvents(); });

    const StartUp start = window.Form_Load(command_line);
    const ExitCode code = report.Result(start, window);
    if (start == StartUp::kDone && !globals.auto_play) window.OfferRecovery();
    while (!window.closed()) clock.WaitForEvents();
    return start != StartUp::kDone || globals.auto_play ? code : kPlayed;
}

}  // namespace tamrin
