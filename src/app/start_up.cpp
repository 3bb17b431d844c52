#include "app/start_up.h"

#include "app/paths.h"
#include "app/settings_file.h"
#include "scenario/player_payload.h"
#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

// The command line of a stand-alone player, whatever the user has written.
constexpr const char* kPlayerSwitches = "-tasktray -close";

// What is wrong with a player; its path stands before this text.
std::string Fault(Carried carried) {
    switch (carried) {
        case Carried::kCut:
            return "\r\nは途中で切れているため、再生できません。\r\nもう一度コピーするか、"
                   "作り直してください。";
        case Carried::kNewer:
            return "\r\nのシナリオは新しい版の Tamrin のもので、再生できません。\r\n作り直してください。";
        default:
            return "\r\nのシナリオが壊れているため、再生できません。\r\nもう一度コピーするか、"
                   "作り直してください。";
    }
}

}  // namespace

void StartScenario::ShowMessage(const std::string& text, const std::string& title) {
    platform_.windows.dialogs().MsgBox(text, title);
}

StartUp StartScenario::LoadCarried() {
    globals_.auto_play = false;
    const std::string program = platform_.processes.OwnExecutable();
    const Payload payload = ReadPayload(platform_.files, program);
    if (payload.carried == Carried::kNothing) return StartUp::kDone;
    globals_.is_player = true;
    if (payload.carried == Carried::kScenario) {
        records_.Load(ReadScenarioText(payload.scenario, platform_.codec));
        globals_.auto_play = true;
        return StartUp::kDone;
    }
    ShowMessage(program + Fault(payload.carried), "再生エラー");
    return StartUp::kNoScenario;
}

StartUp StartScenario::ReadCommandLine(std::string command_line) {
    if (globals_.is_player) command_line = kPlayerSwitches;
    // As when a file is dropped on the program.
    const std::string path = ExistingFile(command_line, platform_.files);
    if (!path.empty()) return Load(path);
    for (const Switch& item : SplitSwitches(command_line)) {
        if (item.name == "auto" || item.name == "a") {
            const StartUp result = LoadFromSwitch(item);
            if (result != StartUp::kDone) return result;
        } else if (item.name == "stream") {
            StreamFromSwitch(item);
        } else if (item.name == "count") {
            const StartUp result = CountFromSwitch(item);
            if (result != StartUp::kDone) return result;
        } else if (item.name == "tasktray") {
            controls_.mnuTaskTray.SetChecked(true);
        } else if (item.name == "close" || item.name == "c") {
            globals_.close_after_play = true;
        } else if (item.name == "keep") {
            globals_.keep_browser = true;
        } else if (item.name == "browser") {
            BrowserFromSwitch(item);
        }
    }
    return StartUp::kDone;
}

StartUp StartScenario::LoadFromSwitch(const Switch& item) {
    if (item.second.empty()) {
        ShowMessage(item.name + "の第二パラメータ（ファイル名）がありません！", "パラメータエラー");
        return StartUp::kParameterError;
    }
    // A file name may hold what the switch's value loses.
    const std::string literal = ExistingFile(item.rest, platform_.files);
    if (!literal.empty()) return Load(literal);
    const std::string value = StripQuotes(SwitchValue(item));
    const std::string path = ExistingFile(value, platform_.files);
    if (!path.empty()) return Load(path);
    ShowMessage(item.name + "\r\n" + value + "\r\nのファイルが存在しません。", "Tamrin");
    return StartUp::kNoScenario;
}

StartUp StartScenario::Load(const std::string& path) {
    if (!scenario_.LoadScenario(path)) return StartUp::kNoScenario;
    globals_.auto_play = true;
    return StartUp::kDone;
}

void StartScenario::StreamFromSwitch(const Switch& item) {
    records_.Load(ScenarioTextLines(DecodeStream(item.second)));
    globals_.current_file = "stream";
    controls_.txtUrl.SetText("stream");
    globals_.auto_play = true;
    globals_.close_after_play = true;
    controls_.mnuTaskTray.SetChecked(true);
}

StartUp StartScenario::CountFromSwitch(const Switch& item) {
    const auto count = PlayCountOf(item.second);
    if (!count) {
        ShowMessage(item.name + "\r\n" + kPlayCountFault, "パラメータエラー");
        return StartUp::kParameterError;
    }
    globals_.settings.play_count = *count;
    return StartUp::kDone;
}

// A name without a folder stays as it is: the launcher looks for it where the system keeps
// programs.
void StartScenario::BrowserFromSwitch(const Switch& item) {
    const std::string browser = StripQuotes(SwitchValue(item));
    const bool is_name = browser.find_first_of("/\\") == std::string::npos;
    Options& options = globals_.options;
    if (!options.kept_browser_path) options.kept_browser_path = options.browser_path;
    options.browser_path = is_name ? browser : ResolvePath(browser, "", platform_.files);
}

}  // namespace tamrin
