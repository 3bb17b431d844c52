// The console program: plays a scenario, records one, or makes a stand-alone player of it, without
// a window of its own.

#include <iostream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/console_recording.h"
#include "app/console_report.h"
#include "app/frm_ie_auto.h"
#include "app/paths.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/chromium/launcher.h"
#include "platform/headless/console_dialogs.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "platform/posix/text_codec.h"

namespace tamrin {
namespace {

constexpr const char* kUsage =
    "使い方: tamrin -a シナリオ.csv [-browser ブラウザのパス] [-picture 画像.png] [-close]\n"
    "        tamrin シナリオ.csv\n"
    "        tamrin -stream シナリオの文字列\n"
    "        tamrin -record シナリオ.csv アドレス [-browser ブラウザのパス]\n"
    "        tamrin -make_player 実行形式のファイル シナリオ.csv\n";

// Opens a player as the ordinary program. It may stand anywhere on the command line; it never
// belongs to another switch.
constexpr const char* kEditorSwitch = "-no_auto_start";

// What the first argument asks for. A player plays its scenario whatever it is asked.
enum class Task { kPlay, kRecord, kMakePlayer, kNothing };

// The words that a task's switch takes with itself: a file and an address, or two files.
constexpr std::size_t kTaskWords = 3;

Task TaskOf(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return Task::kNothing;
    Task task = Task::kPlay;
    if (arguments.front() == "-record") task = Task::kRecord;
    if (arguments.front() == "-make_player") task = Task::kMakePlayer;
    return task != Task::kPlay && arguments.size() < kTaskWords ? Task::kNothing : task;
}

// The command line of the arguments. A single argument that names a file counts from the current
// folder, as a shell's user means it.
std::string CommandLine(Task task, const std::vector<std::string>& arguments, const Files& files) {
    if (task == Task::kRecord || task == Task::kMakePlayer) {
        return JoinArguments({arguments.begin() + kTaskWords, arguments.end()});
    }
    if (arguments.size() != 1) return JoinArguments(arguments);
    const std::string path = ResolvePath(arguments[0], "", files);
    return files.IsFile(path) ? '"' + path + '"' : arguments[0];
}

// Saves a picture of the last page if the command line asks for one.
void KeepPicture(const std::string& command_line, ChromiumLauncher& launcher, Files& files) {
    for (const Switch& item : SplitSwitches(command_line)) {
        if (item.name != "picture") continue;
        const std::string path = ResolvePath(StripQuotes(SwitchValue(item)), "", files);
        const auto picture = launcher.Picture();
        if (picture && files.Replace(path, *picture)) continue;
        std::cerr << "最後のページの画像を保存できません：" << path << '\n';
    }
}

// Makes a player that carries a scenario file.
ExitCode SavePlayer(frmIeAuto& window, const std::string& player, const std::string& scenario,
                    const Files& files) {
    const std::string path = ResolvePath(player, "", files);
    if (!window.Open(ResolvePath(scenario, "", files))) return kUnreadable;
    if (!window.SavePlayerTo(path)) return kNotSaved;
    std::cout << "実行形式で保存しました：" << path << '\n';
    return kPlayed;
}

int Run(std::vector<std::string> arguments) {
    PosixProcesses::CatchInterrupt();
    PosixFiles files;
    PosixTextCodec codec;
    PosixProcesses processes;
    SystemClock clock;
    ConsoleDialogs dialogs(std::cerr);
    HeadlessWindowSystem windows(dialogs);
    Globals globals;
    ChromiumLauncher launcher(processes, files, clock,
                              {.executable = [&] { return globals.options.browser_path; },
                               .stop_requested = PosixProcesses::Interrupted});
    ChromiumWindows browsers(processes, files, clock,
                             {.executable = [&] { return globals.options.browser_path; },
                              .debug_address = [&] { return globals.options.debug_address; },
                              .profile_folder = ProfileFolder(processes, files)});
    const Platform platform{windows, clock, files, codec, processes, launcher, browsers};
    frmIeAuto window(globals, platform);
    ConsoleReport report(std::cout);
    RunResult result;
    window.onRecordDone = [&](const RecordReport& record) {
        report.Record(record);
        result.Add(record);
    };
    clock.AddSource([&] {
        if (PosixProcesses::Interrupted() && globals.ActivityContains("play"))
            window.cmdStop_Click();
    });
    clock.AddSource([&] { launcher.DeliverEvents(); });
    clock.AddSource([&] { browsers.DeliverEvents(); });
    clock.AddSource([&] { windows.RunTimers(clock.TickCount()); });

    const bool editor = std::erase(arguments, kEditorSwitch) > 0;
    Task task = TaskOf(arguments);
    std::string command_line = CommandLine(task, arguments, files);
    if (editor) command_line.append(" ").append(kEditorSwitch);
    const StartUp start = window.Form_Load(command_line);
    if (globals.is_player) task = Task::kPlay;
    ExitCode code = kNothing;
    switch (task) {
        case Task::kNothing:
            std::cerr << kUsage;
            break;
        case Task::kRecord:
            code = RecordToFile(window, platform, arguments[1], arguments[2],
                                PosixProcesses::Interrupted, std::cout);
            break;
        case Task::kMakePlayer:
            code = SavePlayer(window, arguments[1], arguments[2], files);
            break;
        case Task::kPlay:
            KeepPicture(command_line, launcher, files);
            code = result.Code(start, window);
            break;
    }
    // Nobody could change a setting, so Conf.txt stays as it is.
    globals.close_after_play = true;
    window.Close();
    return code;
}

}  // namespace
}  // namespace tamrin

int main(int argc, char** argv) { return tamrin::Run({argv + 1, argv + argc}); }
