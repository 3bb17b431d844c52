#include "app/conf_file.h"
#include "app/frm_ie_auto.h"
#include "app/options_file.h"
#include "app/paths.h"
#include "app/settings.h"
#include "app/version.h"
#include "scenario/player_payload.h"
#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

// The command line of a stand-alone player, whatever it was started with.
constexpr const char* kPlayerSwitches = "-tasktray -close";

// What is wrong with a player, behind its name.
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

StartUp frmIeAuto::Form_Load(const std::string& command_line) {
    platform_.processes.RaisePriority();
    globals_.twips_per_pixel_y = platform_.windows.TwipsPerPixelY();
    globals_.version_text =
        VersionText(TAMRIN_VERSION_MAJOR, TAMRIN_VERSION_MINOR, TAMRIN_VERSION_PATCH);
    MyTitle("");
    SetDefaultConf(globals_.settings, platform_.windows.Screen());
    // What carries a scenario can be opened as an ordinary editor.
    if (command_line.find("-no_auto_start") == std::string::npos) {
        const StartUp carried = LoadCarriedScenario();
        if (carried != StartUp::kDone) return carried;
    }
    if (!globals_.is_player) LoadSettings();
    PlaceWindow();
    display_.Apply();
    file_list_.RefreshFileList();
    controls_.lstDtList.SetTabStops({10});
    controls_.lstDetail.SetTabStops({18, 30, 40});
    // A fiftieth of the width, in pixels.
    controls_.txtUrl.SetLeftMargin(controls_.txtUrl.GetPlace().width * 15 / 50 /
                                   globals_.twips_per_pixel_y);
    controls_.Timer1.SetEnabled(true);
    if (!globals_.is_player) form_->SetVisible(true);

    const StartUp result = ProcessCommandLine(globals_.is_player ? kPlayerSwitches : command_line);
    if (result == StartUp::kParameterError) return result;
    if (globals_.is_player) EnterTray();
    SetMode("play check", true);
    if (globals_.auto_play) {
        cmdPlay_Click();
    } else {
        splash_.emplace(platform_.windows, globals_.version_text, *form_);
    }
    return result;
}

StartUp frmIeAuto::LoadCarriedScenario() {
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
    // There is nothing else that a player could be used for.
    globals_.close_after_play = true;
    form_->Close();
    return StartUp::kNoScenario;
}

void frmIeAuto::LoadSettings() {
    OptionsLoad(globals_.options, platform_.files, platform_.codec);
    recent_files_.Show();
    ConfLoad();
}

void frmIeAuto::ConfLoad() {
    globals_.activity = "confload";
    Settings& settings = globals_.settings;
    const Settings defaults = settings;
    ReadConfFile(settings, platform_.files, platform_.codec);
    if (settings.form_right <= settings.form_left || settings.form_bottom <= settings.form_top) {
        settings.form_left = defaults.form_left;
        settings.form_top = defaults.form_top;
        settings.form_right = defaults.form_right;
        settings.form_bottom = defaults.form_bottom;
    }
    globals_.activity.clear();
}

void frmIeAuto::PlaceWindow() {
    const Settings& settings = globals_.settings;
    form_->SetPlace({settings.form_left, settings.form_top,
                     settings.form_right - settings.form_left,
                     settings.form_bottom - settings.form_top});
    display_.SetTopHeight(settings.top_height);
}

void frmIeAuto::ConfSave() {
    Settings& settings = globals_.settings;
    const Place place = form_->GetPlace();
    settings.form_left = place.left;
    settings.form_top = place.top;
    settings.form_right = place.left + place.width;
    settings.form_bottom = place.top + place.height;
    settings.top_height = display_.TopHeight();
    const bool saved = WriteConfFile(settings, platform_.files, platform_.codec) &&
                       OptionsSave(globals_.options, platform_.files, platform_.codec);
    // A run that nobody watches does not end in a question.
    if (saved || globals_.auto_play) return;
    ShowMessage("設定を保存できません。プログラムのフォルダに書き込めません。", "保存エラー");
}

StartUp frmIeAuto::ProcessCommandLine(std::string command_line) {
    if (IsExistingFile(StripQuotes(command_line), platform_.files)) {
        globals_.current_file = command_line;
        command_line = "-a " + command_line;
    }
    for (const Switch& item : SplitSwitches(command_line)) {
        if (item.name == "auto" || item.name == "a") {
            const StartUp result = LoadFromSwitch(item);
            if (result != StartUp::kDone) return result;
        } else if (item.name == "stream") {
            StreamFromSwitch(item);
        } else if (item.name == "tasktray") {
            controls_.mnuTaskTray.SetChecked(true);
        } else if (item.name == "close" || item.name == "c") {
            globals_.close_after_play = true;
        } else if (item.name == "browser") {
            // A name without a folder is looked for where the system keeps its programs.
            const std::string browser = StripQuotes(SwitchValue(item));
            const bool is_name = browser.find_first_of("/\\") == std::string::npos;
            if (!globals_.options.kept_browser_path) {
                globals_.options.kept_browser_path = globals_.options.browser_path;
            }
            globals_.options.browser_path =
                is_name ? browser : ResolvePath(browser, "", platform_.files);
        }
    }
    return StartUp::kDone;
}

StartUp frmIeAuto::LoadFromSwitch(const Switch& item) {
    if (item.second.empty()) {
        ShowMessage(item.name + "の第二パラメータ（ファイル名）がありません！", "パラメータエラー");
        return StartUp::kParameterError;
    }
    const std::string value = StripQuotes(SwitchValue(item));
    const std::string path = ResolvePath(value, "", platform_.files);
    if (!IsExistingFile(path, platform_.files)) {
        ShowMessage(item.name + "\r\n" + value + "\r\nのファイルが存在しません。", "");
        return StartUp::kNoScenario;
    }
    if (!scenario_.LoadScenario(path)) return StartUp::kNoScenario;
    globals_.auto_play = true;
    return StartUp::kDone;
}

void frmIeAuto::StreamFromSwitch(const Switch& item) {
    records_.Load(ScenarioTextLines(DecodeStream(item.second)));
    globals_.current_file = "stream";
    controls_.txtUrl.SetText("stream");
    globals_.auto_play = true;
    globals_.close_after_play = true;
    controls_.mnuTaskTray.SetChecked(true);
}

}  // namespace tamrin
