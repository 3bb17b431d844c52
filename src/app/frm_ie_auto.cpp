#include "app/frm_ie_auto.h"

#include <utility>

#include "app/frm_setting.h"
#include "app/frm_tools.h"
#include "app/paths.h"
#include "app/settings_file.h"
#include "app/small_forms.h"
#include "browser/wait.h"
#include "scenario/character_escape.h"

namespace tamrin {
namespace {

// A run that was started automatically ends when no page has been completed for this time.
constexpr std::uint32_t kWatchdogMs = 30000;

// Adds a line with date and time to the log "Tamrin.log" in the program's folder, in code page 932.
// A line that cannot be written is lost.
void Log(const Platform& platform, const std::string& line) {
    Files& files = platform.files;
    std::string bytes;
    AppendEncoded(bytes, platform.clock.TimeStamp() + " " + line + "\r\n", platform.codec);
    files.Append(files.ProgramFolder() + files.Separator() + "Tamrin.log", bytes);
}

bool OpensPage(const RecordReport& record) {
    return record.act == "url" || record.act == "navigate";
}

}  // namespace

frmIeAuto::frmIeAuto(Globals& globals, const Platform& platform)
    : globals_(globals),
      platform_(platform),
      form_(platform.windows.Create(MainFormSpec())),
      controls_(*form_),
      display_(globals, *form_, controls_),
      records_(globals, platform.windows, platform.clock, controls_.lstDtList),
      edit_(platform.windows, *form_, controls_.lstDtList, records_),
      scenario_(globals, platform, controls_, records_),
      file_list_(globals, platform, *form_, controls_, scenario_),
      player_maker_(globals, platform, controls_, records_, scenario_),
      recording_(globals, platform, *form_, controls_, records_),
      tool_panel_(globals, controls_, [this] { return recording_.Page(); }),
      start_(globals, platform, controls_, records_, scenario_),
      player_(globals, platform.clock, platform.launcher, *this, *this) {
    BindEvents();
    BindMenus();
}

frmIeAuto::~frmIeAuto() = default;

void frmIeAuto::BindEvents() {
    controls_.cmdRec.onClick = [this] { recording_.cmdRec_Click(); };
    controls_.cmdPlay.onClick = [this] { cmdPlay_Click(); };
    controls_.cmdStop.onClick = [this] { cmdStop_Click(); };
    controls_.Timer1.onTimer = [this] { Timer1_Timer(); };
    controls_.lstDtList.onDblClick = [this] { edit_.mnuEdit_Click(); };
    controls_.lstDtList.onContext = [this] { form_->PopUp("mnuContext"); };
    records_.onListChanged = [this] {
        // While recording, nothing can be played.
        if (!globals_.ActivityContains("rec")) SetMode("play check");
    };
    records_.onSettled = [this] { recording_.ForgetRecovery(); };
    recording_.onMode = [this](std::string_view mode) { SetMode(mode); };
    recording_.onStopped = [this] {
        if (std::exchange(close_when_stopped_, false)) form_->Close();
    };
    scenario_.onOpened = [this] {
        MyTitle(globals_.current_file);
        file_list_.ShowRecentFiles();
        file_list_.SelectOpenFile();
    };
    scenario_.onSavedAs = [this] { file_list_.RefreshFileList(); };
    display_.onToolPanel = [this] { tool_panel_.Refresh(); };
    form_->onDropFiles = [this](const std::vector<std::string>& paths) {
        if (!paths.empty()) scenario_.Open(paths.front());
    };
    form_->onQueryUnload = [this] { return Form_QueryUnload(); };
    form_->onUnload = [this] {
        closed_ = true;
        splash_.reset();
        if (tools_) tools_->Close();
        globals_.activity.clear();
        HoldBrowser(nullptr);
        recording_.ForgetRecovery();
    };
}

void frmIeAuto::BindMenus() {
    const auto bind = [this](std::string_view name, std::function<void()> handler) {
        form_->Find(name).onClick = std::move(handler);
    };
    bind("mnuNew", [this] { scenario_.mnuNew_Click(); });
    bind("mnuOpen", [this] { scenario_.mnuOpen_Click(); });
    bind("mnuOpenFolder", [this] { file_list_.mnuOpenFolder_Click(); });
    bind("mnuSave", [this] { scenario_.mnuSave_Click(); });
    bind("mnuSaveAs", [this] { scenario_.mnuSaveAs_Click(); });
    bind("mnuMakeExe", [this] { player_maker_.mnuMakeExe_Click(); });
    bind("mnuClose", [this] { form_->Close(); });

    bind("mnuUndo", [this] { records_.mnuUndo_Click(); });
    bind("mnuRedo", [this] { records_.mnuRedo_Click(); });
    bind("mnuCopy", [this] { records_.mnuContextCopy_Click(); });
    bind("mnuPaste", [this] { records_.mnuContextPaste_Click(); });
    bind("mnuSelectAll", [this] { records_.mnuSelectAll_Click(); });
    bind("mnuEditRecord", [this] { edit_.mnuEdit_Click(); });
    bind("mnuEditLine", [this] { edit_.mnuEditLine_Click(); });
    bind("mnuEditAll", [this] { edit_.mnuEditAll_Click(); });
    // The key works on the list that has the focus.
    bind("mnuDelete", [this] {
        if (controls_.lstCsv.Focused()) {
            file_list_.mnuListDelFile_Click();
        } else {
            records_.mnuDelLine_Click();
        }
    });

    bind("mnuRec", [this] { recording_.cmdRec_Click(); });
    bind("mnuRecBrowser", [this] { recording_.mnuRecBrowser_Click(); });
    bind("mnuTools", [this] { mnuTools_Click(); });
    bind("mnuPlay", [this] { cmdPlay_Click(); });
    bind("mnuStop", [this] { cmdStop_Click(); });
    bind("mnuSkip", [this] { globals_.skip_wait = true; });

    bind("mnuRepeat", [this] { mnuRepeat_Click(); });
    bind("mnuSetting", [this] { mnuSetting_Click(); });
    bind("mnuManual", [this] { mnuManual_Click(); });
    bind("mnuAbout", [this] { ShowAbout(platform_.windows, globals_.version_text, *form_); });

    bind("mnuEdit", [this] { edit_.mnuEdit_Click(); });
    bind("mnuAddUpper", [this] { records_.mnuAddUpper_Click(); });
    bind("mnuAddUnder", [this] { records_.mnuAddUnder_Click(); });
    bind("mnuDelLine", [this] { records_.mnuDelLine_Click(); });
    bind("mnuContextCopy", [this] { records_.mnuContextCopy_Click(); });
    bind("mnuContextPaste", [this] { records_.mnuContextPaste_Click(); });

    bind("mnuListOpen", [this] { controls_.lstCsv.onDblClick(); });
    bind("mnuListRefresh", [this] { file_list_.RefreshFileList(); });
    bind("mnuListDelFile", [this] { file_list_.mnuListDelFile_Click(); });
}

StartUp frmIeAuto::Form_Load(const std::string& command_line) {
    platform_.processes.RaisePriority();
    globals_.twips_per_pixel_y = platform_.windows.TwipsPerPixelY();
    // Minor number and revision stand together: 2, 0, 5 is "2.05".
    globals_.version_text = std::to_string(TAMRIN_VERSION_MAJOR) + "." +
                            std::to_string(TAMRIN_VERSION_MINOR) +
                            std::to_string(TAMRIN_VERSION_PATCH);
    MyTitle("");
    SetDefaultConf(globals_.settings, platform_.windows.Screen());
    // This switch opens a program that carries a scenario as the ordinary editor.
    if (command_line.find("-no_auto_start") == std::string::npos) {
        const StartUp carried = start_.LoadCarried();
        if (carried != StartUp::kDone) {
            globals_.close_after_play = true;
            form_->Close();
            return carried;
        }
    }
    if (!globals_.is_player) LoadSettings();
    ShowWindow();
    const StartUp result = start_.ReadCommandLine(command_line);
    display_.ShowPlayCount();
    if (result == StartUp::kParameterError) return result;
    if (globals_.is_player) EnterTray();
    SetMode("play check");
    if (globals_.auto_play) {
        cmdPlay_Click();
    } else {
        splash_ = ShowSplash(platform_.windows, globals_.version_text, *form_);
    }
    return result;
}

void frmIeAuto::LoadSettings() {
    LoadOptions(globals_.options, platform_.files, platform_.codec);
    file_list_.ShowRecentFiles();
    globals_.activity = "confload";
    LoadConf(globals_.settings, platform_.files, platform_.codec);
    globals_.activity.clear();
}

void frmIeAuto::ShowWindow() {
    display_.PlaceWindow();
    display_.Apply();
    file_list_.RefreshFileList();
    controls_.lstDtList.SetTabStops({10});
    controls_.lstDetail.SetTabStops({18, 30, 40});
    // A fiftieth of the width, in pixels.
    controls_.txtUrl.SetLeftMargin(controls_.txtUrl.GetPlace().width * 15 / 50 /
                                   globals_.twips_per_pixel_y);
    controls_.Timer1.SetEnabled(true);
    if (!globals_.is_player) form_->SetVisible(true);
}

bool frmIeAuto::Form_QueryUnload() {
    if (globals_.ActivityContains("rec")) {
        close_when_stopped_ = !recording_.Stop();
        if (close_when_stopped_) return false;
    }
    if (!scenario_.PromptSaveChanges(ScenarioFiles::Before::kClosing)) return false;
    // A run that only plays and closes leaves the user's settings as they are.
    if (!globals_.close_after_play) SaveSettings();
    return true;
}

void frmIeAuto::SaveSettings() {
    display_.KeepPlace();
    const bool saved = SaveConf(globals_.settings, platform_.files, platform_.codec) &&
                       SaveOptions(globals_.options, platform_.files, platform_.codec);
    // A run that nobody watches must not end in a question.
    if (saved || globals_.auto_play) return;
    ShowMessage("設定を保存できません。プログラムのフォルダに書き込めません。", "保存エラー");
}

void frmIeAuto::MyTitle(std::string_view file_name) {
    title_ = "Tamrin " + globals_.version_text;
    if (!file_name.empty()) title_ += " < " + std::string(FileNameOf(file_name)) + " >";
    form_->SetCaption(title_);
}

void frmIeAuto::SetMode(std::string_view mode, bool on) {
    const bool has_records = controls_.lstDtList.Count() > 0;
    if (mode == "all") {
        controls_.cmdRec.SetEnabled(true);
        controls_.cmdPlay.SetEnabled(has_records);
        controls_.cmdStop.SetEnabled(false);
    } else if (mode == "rec" || mode == "play") {
        controls_.cmdRec.SetEnabled(!on);
        controls_.cmdPlay.SetEnabled(!on);
        controls_.cmdStop.SetEnabled(on);
    } else if (mode == "stop") {
        if (globals_.ActivityContains("rec")) {
            controls_.cmdRec.SetEnabled(on);
        } else if (globals_.ActivityContains("play")) {
            controls_.cmdRec.SetEnabled(!on);
        }
        controls_.cmdPlay.SetEnabled(has_records);
        controls_.cmdStop.SetEnabled(!on);
    } else if (mode == "play check") {
        controls_.cmdPlay.SetEnabled(has_records);
    }
    form_->Find("mnuRec").SetEnabled(controls_.cmdRec.Enabled());
    form_->Find("mnuPlay").SetEnabled(controls_.cmdPlay.Enabled());
    form_->Find("mnuStop").SetEnabled(controls_.cmdStop.Enabled());
    form_->Find("mnuSkip").SetEnabled(controls_.cmdStop.Enabled() &&
                                      globals_.ActivityContains("play"));
    form_->Find("mnuMakeExe")
        .SetEnabled(has_records && controls_.cmdPlay.Enabled() && !globals_.is_player);
}

void frmIeAuto::cmdPlay_Click() {
    if (playing_ || globals_.ActivityContains("rec")) return;
    playing_ = true;
    page_failed_ = false;
    address_failed_ = false;
    timed_out_ = false;
    const bool may_play = scenario_.MayPlay();
    const RunEnd end = may_play ? player_.Play() : RunEnd::kStopped;
    last_run_ = timed_out_ ? RunEnd::kTimedOut : end;
    form_->SetCaption(title_);
    playing_ = false;
    if (!may_play && globals_.close_after_play) form_->Close();
}

void frmIeAuto::cmdStop_Click() {
    if (globals_.ActivityContains("rec")) {
        recording_.Stop();
        return;
    }
    SetMode("all");
    globals_.activity.clear();
    const std::shared_ptr<Browser> browser = target_ie_;
    HoldBrowser(nullptr);
    if (browser) browser->SetForeground();
}

void frmIeAuto::Timer1_Timer() {
    // Once: where the user cancels the close, the run goes on.
    const bool watched = globals_.ActivityContains("play") && globals_.auto_play && !timed_out_;
    if (const std::string why = watched ? WhyTooLong() : std::string(); !why.empty()) {
        timed_out_ = true;
        const std::string name =
            globals_.is_player ? platform_.processes.OwnExecutable() : globals_.current_file;
        SetStatus(why);
        Log(platform_, name + "：" + why);
        form_->Close();
        return;
    }
    recording_.Poll();
    if (globals_.activity.empty()) tool_panel_.Refresh();
}

std::string frmIeAuto::WhyTooLong() const {
    const std::uint32_t now = platform_.clock.TickCount();
    const std::string row = std::to_string(controls_.lstDtList.ListIndex() + 1);
    if (now - globals_.last_activity_tick > kWatchdogMs) {
        return row +
               " 行目の再生中、30 秒のあいだページの読み込みが完了しなかったため、終了しました。";
    }
    const int seconds = globals_.options.record_limit;
    if (seconds == 0 || now - record_began_ <= static_cast<std::uint32_t>(seconds) * 1000U) {
        return "";
    }
    return row + " 行目の再生が " + std::to_string(seconds) +
           " 秒たっても終わらないため、終了しました。";
}

void frmIeAuto::mnuRepeat_Click() {
    const auto count = AskPlayCount(platform_.windows, globals_.settings.play_count, *form_);
    if (!count) return;
    globals_.settings.play_count = *count;
    display_.ShowPlayCount();
}

void frmIeAuto::mnuTools_Click() {
    if (tools_ && !tools_->closed()) {
        tools_->Activate();
    } else {
        tools_ = std::make_unique<frmTools>(globals_, platform_, *form_, recording_);
    }
}

void frmIeAuto::mnuSetting_Click() {
    frmSetting(globals_, platform_).ShowModal(*form_);
    // All settings may be the default ones now.
    display_.Apply();
    file_list_.RefreshFileList();
}

void frmIeAuto::mnuManual_Click() {
    const Files& files = platform_.files;
    const std::string path = files.ProgramFolder() + files.Separator() + "manual.ja.html";
    if (!files.IsFile(path)) {
        ShowMessage(path +
                        "\r\nの使い方のファイルがありません。\r\n"
                        "プログラムと一緒に配られている manual.ja.html と images フォルダを、"
                        "プログラムと同じフォルダに置いてください。",
                    "使い方");
    } else if (!platform_.windows.ShellOpen(path)) {
        ShowMessage(path + "\r\nの使い方のファイルをブラウザーで開けません。", "使い方");
    }
}

void frmIeAuto::ShowMessage(const std::string& text, const std::string& title) {
    platform_.windows.dialogs().MsgBox(text, title.empty() ? "Tamrin" : title);
}

void frmIeAuto::HoldBrowser(std::shared_ptr<Browser> browser) {
    event_ie_.reset();
    target_ie_ = std::move(browser);
    if (target_ie_) event_ie_ = target_ie_->Connect(*this);
}

std::optional<Rect> frmIeAuto::WindowRect() {
    if (!form_->Visible()) return std::nullopt;
    const Place place = form_->ShownPlace();
    return Rect{static_cast<double>(place.left), static_cast<double>(place.top),
                static_cast<double>(place.left + place.width),
                static_cast<double>(place.top + place.height)};
}

void frmIeAuto::EnterTray() {
    if (!controls_.mnuTaskTray.Checked()) return;
    form_->SetTrayIcon(true);
    form_->SetVisible(false);
}

void frmIeAuto::LeaveTray() {
    if (closed_) return;  // during the run
    form_->SetTrayIcon(false);
    form_->SetVisible(true);
}

void frmIeAuto::RunBegan() {
    record_began_ = platform_.clock.TickCount();
    SetMode("play");
    HoldBrowser(nullptr);
}

void frmIeAuto::BrowserOpened(std::shared_ptr<Browser> browser) {
    HoldBrowser(std::move(browser));
    EnterTray();
}

void frmIeAuto::RecordBegan(int row) {
    controls_.lstDtList.SetListIndex(row);
    // The progress stands at the front of the title, where the task bar shows it too.
    form_->SetCaption("(" + std::to_string(row + 1) + "/" + std::to_string(RecordCount()) + ") " +
                      title_);
}

void frmIeAuto::RecordDone(const RecordReport& report) {
    record_began_ = platform_.clock.TickCount();  // the next one
    TellDone();                                   // of the one before
    done_ = report;
    if (!OpensPage(report) || !target_ie_ || IEState(*target_ie_) == 4) TellDone();
}

void frmIeAuto::RunEnded(RunEnd end) {
    switch (end) {
        case RunEnd::kNothingToPlay:
            HoldBrowser(nullptr);
            return;
        case RunEnd::kBadSizeBar:
            return;
        case RunEnd::kNoBrowser:
            SetMode("all");
            if (globals_.close_after_play) form_->Close();
            return;
        default:
            break;
    }
    TellDone();
    if (onRunEnded) onRunEnded();
    if (globals_.close_after_play || globals_.settings.quit_after_play) {
        if (target_ie_) target_ie_->SetForeground();
        platform_.clock.DoEvents();
        if (form_->Close()) return;
        globals_.activity.clear();  // the user has cancelled
    }
    LeaveTray();
    SetMode("play", false);
}

void frmIeAuto::TellDone() {
    auto report = std::exchange(done_, std::nullopt);
    if (!report) return;
    const bool failed = std::exchange(address_failed_, false);
    if (failed && OpensPage(*report)) report->outcome = RecordOutcome::kPageFailed;
    if (onRecordDone) onRecordDone(*report);
}

void frmIeAuto::DocumentComplete(bool top) {
    if (top) TellDone();
    globals_.last_activity_tick = platform_.clock.TickCount();
}

void frmIeAuto::BeforeNavigate2(const std::string& /*url*/) {
    globals_.last_activity_tick = platform_.clock.TickCount();
}

void frmIeAuto::NavigateError(const std::string& url, const std::string& reason) {
    page_failed_ = true;
    address_failed_ = true;
    TellDone();
    SetStatus("ページを開けません：" + url + " （" + reason + "）");
}

void frmIeAuto::OnQuit() { HoldBrowser(nullptr); }

}  // namespace tamrin
