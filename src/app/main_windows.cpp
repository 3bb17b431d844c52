// The Windows program: the main window on the screen.

#include <functional>
#include <string>

#include "app/browser_choice.h"
#include "app/console_report.h"
#include "app/frm_ie_auto.h"
#include "app/paths.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/chromium/launcher.h"
#include "platform/explorer/call_filter.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/explorer/explorer_windows.h"
#include "platform/windows/clock.h"
#include "platform/windows/entry.h"
#include "platform/windows/files.h"
#include "platform/windows/input.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "platform/windows/window_system.h"

namespace tamrin {
namespace {

// The browsers of this machine: Internet Explorer by its automation objects, Edge and Chrome by
// their port for debugging.
class Browsers {
public:
    // `stopping` answers whether the user has stopped a run that has not ended yet.
    Browsers(Globals& globals, Processes& processes, Files& files, Clock& clock,
             const std::function<bool()>& stopping)
        : filter_(calls_, {.stop_requested = stopping,
                           .means_stop =
                               [](const MSG& message) {
                                   return WindowForm::WillPress(
                                       message, {"frmIeAuto", "cmdStop", "mnuStop"});
                               }}),
          sources_(SystemSources(calls_)),
          input_(clock, {.stop_requested = stopping}),
          explorers_(calls_, sources_),
          explorer_(explorers_, input_),
          chromium_(processes, files, clock,
                    {.executable = [&] { return globals.options.browser_path; },
                     .stop_requested = nullptr,
                     .outlives = [&] { return globals.keep_browser; }}),
          chromiums_(processes, files, clock,
                     {.executable = [&] { return globals.options.browser_path; },
                      .debug_address = [&] { return globals.options.debug_address; },
                      .profile_folder = ProfileFolder(processes, files),
                      .outlives = [&] { return globals.keep_browser; },
                      .stop_requested = nullptr,
                      .played = &chromium_.browser()}),
          choice_(globals.options, {explorer_, explorers_}, {chromium_, chromiums_},
                  [&] { return ExplorerAnswers(calls_, sources_, clock); }) {
        calls_.Trace([&](const std::string& line) {
            const std::string& path = globals.options.trace_path;
            if (path.empty()) return;
            files.Append(ResolvePath(path, files.ProgramFolder(), files),
                         clock.TimeStamp() + " " + line + "\r\n");
        });
    }

    BrowserChoice& choice() { return choice_; }

    void DeliverEvents() {
        explorers_.DeliverEvents();
        chromium_.DeliverEvents();
        chromiums_.DeliverEvents();
    }

private:
    Apartment apartment_;
    ComCalls calls_;
    CallFilter filter_;
    ExplorerSources sources_;
    WindowsInput input_;
    ExplorerWindows explorers_;
    ExplorerLauncher explorer_;
    ChromiumLauncher chromium_;
    ChromiumWindows chromiums_;
    BrowserChoice choice_;
};

}  // namespace

// Answers how the run of the command line ended; kPlayed when the program was started without one.
int Main(const std::string& command_line) {
    WindowsFiles files;
    WindowsTextCodec codec;
    WindowsProcesses processes;
    WindowsClock clock;
    WindowsWindowSystem windows(clock);
    Globals globals;
    // Its user goes on in the window of a run.
    globals.keep_browser = true;
    const frmIeAuto* main_window = nullptr;
    Browsers browsers(globals, processes, files, clock,
                      [&] { return main_window && main_window->Stopping(); });
    frmIeAuto window(
        globals, {windows, clock, files, codec, processes, browsers.choice(), browsers.choice()});
    main_window = &window;
    RunResult result;
    window.onRecordDone = [&](const RecordReport& record) { result.Add(record); };
    clock.AddSource([&] { browsers.DeliverEvents(); });

    const StartUp start = window.Form_Load(command_line);
    const ExitCode code = result.Code(start, window);
    if (start == StartUp::kDone && !globals.auto_play) window.OfferRecovery();
    while (!window.closed()) clock.WaitForEvents();
    return start != StartUp::kDone || globals.auto_play ? code : kPlayed;
}

}  // namespace tamrin
