// The console program: plays a scenario, records one, or makes a stand-alone player of it, without
// a window of its own.

#include <iostream>
#include <string>
#include <string_view>
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
#include "scenario/player_payload.h"

namespace tamrin {
namespace {

// Each switch begins a line, where IsSwitch looks for it.
constexpr std::string_view kUsage =
    "使い方: tamrin シナリオ.csv [指定...]\n"
    "        tamrin -stream シナリオの文字列 [指定...]\n"
    "        tamrin -record シナリオ.csv アドレス [指定...]\n"
    "        tamrin -make_player 実行形式のファイル シナリオ.csv\n"
    "\n"
    "  -a ファイル         シナリオを再生します。最初にファイルだけを書いても同じです\n"
    "  -auto ファイル      -a と同じです\n"
    "  -stream 文字列      文字列のシナリオを再生します。%SPC% は空白、%SPC-% は空白とハイフンです\n"
    "  -count 回数         シナリオをこの回数だけ再生します\n"
    "  -browser ブラウザー 使うブラウザーの名前または場所です\n"
    "  -picture ファイル   最後のページを PNG 画像で残します\n"
    "  -keep               終わっても、ブラウザーを開いたまま残します\n"
    "  -close              再生したら終わり、設定を保存しません\n"
    "  -c                  -close と同じです\n"
    "  -tasktray           tamrin.exe で、再生のあいだ通知領域のアイコンになります\n"
    "  -no_auto_start      実行形式のファイルを、普通の Tamrin として開きます\n"
    "  --help              この説明を表示します\n"
    "  --version           版を表示します\n";

bool IsSwitch(const std::string& name) {
    return kUsage.find("\n  -" + name + " ") != std::string_view::npos;
}

// Opens a player as the ordinary program. It may stand anywhere on the command line; it never
// belongs to another switch.
constexpr const char* kEditorSwitch = "-no_auto_start";

// What the first argument asks for. A player plays its scenario whatever it is asked.
enum class Task { kPlay, kRecord, kMakePlayer, kHelp, kVersion, kNothing };

// The words that a task's switch takes with itself: a file and an address, or two files.
constexpr std::size_t kTaskWords = 3;

Task TaskOf(const std::vector<std::string>& arguments) {
    if (arguments.empty()) return Task::kNothing;
    const std::string& first = arguments.front();
    if (first == "--help" || first == "-help" || first == "-h") return Task::kHelp;
    if (first == "--version" || first == "-version") return Task::kVersion;
    if (first != "-record" && first != "-make_player") return Task::kPlay;
    if (arguments.size() < kTaskWords) return Task::kNothing;
    return first == "-record" ? Task::kRecord : Task::kMakePlayer;
}

// The command line of the arguments behind a task's words. A first word that is no switch is the
// scenario, as if "-a" stood before it, unless a switch names one.
std::string CommandLine(Task task, std::vector<std::string> arguments, const Files& files) {
    if (task == Task::kRecord || task == Task::kMakePlayer) {
        arguments.erase(arguments.begin(), arguments.begin() + kTaskWords);
    }
    std::string line = JoinArguments(arguments);
    if (task != Task::kPlay || line.empty() || line.starts_with('-')) return line;
    if (!ExistingFile(line, files).empty()) return line;
    for (const Switch& item : SplitSwitches(line)) {
        if (item.name == "a" || item.name == "auto" || item.name == "stream") return line;
    }
    return "-a " + line;
}

// Tells of switches that there are not; the others are carried out.
void TellUnknown(const std::string& command_line, const Files& files) {
    if (!ExistingFile(command_line, files).empty()) return;
    for (const Switch& item : SplitSwitches(command_line)) {
        if (!IsSwitch(item.name)) std::cerr << "-" << item.name << " という指定は使えません。\n";
    }
}

// Says why nothing was played, where no message box has said it.
void TellNothing(const Globals& globals, frmIeAuto& window) {
    if (!globals.auto_play) {
        std::cerr << kUsage;
    } else if (window.RecordCount() > 0 && window.last_run() == RunEnd::kNothingToPlay) {
        std::cerr << "最初に開くページ（url の行）がないため、再生できるものがありません。\n";
    }
}

// Saves a picture of the last page if the command line asks for one; false when it cannot.
bool KeepPicture(const std::string& command_line, ChromiumLauncher& launcher, Files& files) {
    for (const Switch& item : SplitSwitches(command_line)) {
        if (item.name != "picture") continue;
        const std::string path = ResolvePath(StripQuotes(SwitchValue(item)), "", files);
        const auto picture = launcher.Picture();
        if (picture && files.Replace(path, *picture)) continue;
        std::cerr << "最後のページの画像を保存できません：" << path << '\n';
        return false;
    }
    return true;
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
    PosixProcesses::CatchSignals();
    PosixFiles files;
    PosixTextCodec codec;
    PosixProcesses processes;
    SystemClock clock;
    ConsoleDialogs dialogs(std::cerr);
    HeadlessWindowSystem windows(dialogs);
    Globals globals;
    ChromiumLauncher launcher(processes, files, clock,
                              {.executable = [&] { return globals.options.browser_path; },
                               .stop_requested = PosixProcesses::Interrupted,
                               .outlives = [&] { return globals.keep_browser; }});
    ChromiumWindows browsers(processes, files, clock,
                             {.executable = [&] { return globals.options.browser_path; },
                              .debug_address = [&] { return globals.options.debug_address; },
                              .profile_folder = ProfileFolder(processes, files),
                              .outlives = [&] { return globals.keep_browser; },
                              .stop_requested = PosixProcesses::Interrupted});
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
    const bool player =
        !editor && ReadPayload(files, processes.OwnExecutable()).carried != Carried::kNothing;
    const Task task = player ? Task::kPlay : TaskOf(arguments);
    if (editor) arguments.emplace_back(kEditorSwitch);
    const std::string command_line = CommandLine(task, arguments, files);
    const bool acts = task == Task::kPlay || task == Task::kRecord || task == Task::kMakePlayer;
    if (acts && !player) TellUnknown(command_line, files);
    // What the window would show in its status box.
    Control& status = windows.FindForm("frmIeAuto")->Find("txtStatus");
    status.onChange = [&] {
        if (task == Task::kPlay && !status.Text().empty()) std::cerr << status.Text() << '\n';
    };
    bool picture_kept = true;
    window.onRunEnded = [&] { picture_kept = KeepPicture(command_line, launcher, files); };
    if ((task == Task::kPlay || task == Task::kRecord) && processes.IsRoot()) {
        std::cerr << "root で実行しているため、ブラウザーはサンドボックスなしで動きます。\n";
    }
    const StartUp start = window.Form_Load(command_line);
    ExitCode code = kNothing;
    switch (task) {
        case Task::kHelp:
            std::cout << kUsage;
            code = kPlayed;
            break;
        case Task::kVersion:
            std::cout << "Tamrin " << globals.version_text << '\n';
            code = kPlayed;
            break;
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
            code = result.Code(start, window);
            if (code == kPlayed && !picture_kept) code = kNotSaved;
            if (start == StartUp::kDone && code == kNothing) TellNothing(globals, window);
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
