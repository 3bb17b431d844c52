// The console program: plays a scenario, or records one, without a window of its own.

#include <iostream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/console_recording.h"
#include "app/console_report.h"
#include "app/frm_ie_auto.h"
#include "app/paths.h"
#include "app/profile_folder.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/chromium/launcher.h"
#include "platform/headless/console_dialogs.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/files.h"
#include "platform/posix/interrupt.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "platform/posix/text_codec.h"

namespace tamrin {
namespace {

constexpr const char* kUsage =
    "使い方: tamrin -a シナリオ.csv [-browser ブラウザのパス] [-picture 画像.png] [-close]\n"
    "        tamrin シナリオ.csv\n"
    "        tamrin -stream シナリオの文字列\n"
    "        tamrin -record シナリオ.csv アドレス [-browser ブラウザのパス]\n";

// What is behind "-record": a file, an address and further switches.
constexpr std::size_t kRecordArguments = 3;

// The command line of the arguments. A single argument that names a file counts from the current
// folder, as a shell's user means it.
std::string CommandLine(const std::vector<std::string>& arguments, const Files& files) {
    if (arguments.size() != 1) return JoinArguments(arguments);
    const std::string path = ResolvePath(arguments[0], "", files);
    return files.IsFile(path) ? '"' + path + '"' : arguments[0];
}

// Keeps a picture of the last page where the command line asks for one.
void KeepPicture(const std::string& command_line, ChromiumLauncher& launcher, Files& files) {
    for (const Switch& item : SplitSwitches(command_line)) {
        if (item.name != "picture") continue;
        const std::string path = ResolvePath(StripQuotes(SwitchValue(item)), "", files);
        const auto picture = launcher.Picture();
        if (picture && files.Replace(path, *picture)) continue;
        std::cerr << "最後のページの画像を保存できません：" << path << '\n';
    }
}

int Run(const std::vector<std::string>& arguments) {
    CatchInterrupt();
    PosixFiles files;
    PosixTextCodec codec;
    PosixProcesses processes;
    SystemClock clock;
    ConsoleDialogs dialogs(std::cerr);
    HeadlessWindowSystem windows(dialogs);
    Globals globals;
    ChromiumLauncher launcher(processes, files, clock,
                              {.executable = [&] { return globals.options.browser_path; },
                               .stop_requested = Interrupted});
    ChromiumWindows browsers(processes, files, clock,
                             {.executable = [&] { return globals.options.browser_path; },
                              .debug_address = [&] { return globals.options.debug_address; },
                              .profile_folder = ProfileFolder(processes, files)});
    const Platform platform{windows, clock, files, codec, processes, launcher, browsers};
    frmIeAuto window(globals, platform);
    ConsoleReport report(std::cout);
    window.onRecordDone = [&](const RecordReport& record) { report.Record(record); };
    clock.AddSource([&] {
        if (Interrupted() && globals.ActivityContains("play")) window.cmdStop_Click();
    });
    clock.AddSource([&] { launcher.DeliverEvents(); });
    clock.AddSource([&] { browsers.DeliverEvents(); });
    clock.AddSource([&] { windows.RunTimers(clock.TickCount()); });

    const bool records = arguments.front() == "-record";
    const std::string command_line =
        records ? JoinArguments({arguments.begin() + kRecordArguments, arguments.end()})
                : CommandLine(arguments, files);
    const StartUp start = window.Form_Load(command_line);
    ExitCode code = kPlayed;
    if (records) {
        code = RecordToFile(window, platform, arguments[1], arguments[2], Interrupted, std::cout);
    } else {
        KeepPicture(command_line, launcher, files);
        code = report.Result(start, window);
    }
    // Nobody was here to change a setting: Conf.txt stays as it is.
    globals.close_after_play = true;
    window.Close();
    return code;
}

}  // namespace
}  // namespace tamrin

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool records = !arguments.empty() && arguments.front() == "-record";
    if (arguments.empty() || (records && arguments.size() < tamrin::kRecordArguments)) {
        std::cerr << tamrin::kUsage;
        return tamrin::kNothing;
    }
    return tamrin::Run(arguments);
}
