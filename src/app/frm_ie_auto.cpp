#include "app/frm_ie_auto.h"

#include <utility>

#include "app/frm_tools.h"
#include "app/paths.h"
#include "app/run_log.h"

namespace tamrin {
namespace {

// A run that nobody started by hand ends when no page has been completed for so long.
constexpr std::uint32_t kWatchdogMs = 30000;

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
      recent_files_(globals, platform, *form_, scenario_),
      player_maker_(globals, platform, controls_, records_, scenario_),
      recording_(globals, platform, *form_, controls_, records_),
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
        // While one is recorded, no scenario can be played.
        if (!globals_.ActivityContains("rec")) SetMode("play check", true);
    };
    records_.onSettled = [this] { recording_.ForgetRecovery(); };
    recording_.onMode = [this](std::string_view mode) { SetMode(mode, true); };
    recording_.onStopped = [this] {
        if (std::exchange(close_when_stopped_, false)) form_->Close();
    };
    scenario_.onOpened = [this] {
        MyTitle(globals_.current_file);
        recent_files_.Show();
        file_list_.SelectOpenFile();
    };
    scenario_.onSavedAs = [this] { file_list_.RefreshFileList(); };
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

bool frmIeAuto::Form_QueryUnload() {
    if (globals_.ActivityContains("rec")) {
        close_when_stopped_ = !recording_.Stop();
        if (close_when_stopped_) return false;
    }
    if (!scenario_.PromptSaveChanges(ScenarioFiles::Before::kClosing)) return false;
    // A run that only plays and closes leaves the user's settings as they are.
    if (!globals_.close_after_play) ConfSave();
    return true;
}

void frmIeAuto::MyTitle(std::string_view file_name) {
    title_ = "Tamrin " + globals_.version_text;
    if (!file_name.empty()) title_ += " < " + std::string(FileNameOf(file_name)) + " >";
    form_->SetCaption(title_);
}

void frmIeAuto::cmdPlay_Click() {
    if (playing_ || globals_.ActivityContains("rec")) return;
    playing_ = true;
    page_failed_ = false;
    timed_out_ = false;
    const RunEnd end = player_.Play();
    last_run_ = timed_out_ ? RunEnd::kTimedOut : end;
    form_->SetCaption(title_);
    playing_ = false;
}

void frmIeAuto::cmdStop_Click() {
    if (globals_.ActivityContains("rec")) {
        recording_.Stop();
        return;
    }
    SetMode("all", true);
    globals_.activity.clear();
    const std::shared_ptr<Browser> browser = target_ie_;
    HoldBrowser(nullptr);
    if (browser) browser->SetForeground();
}

void frmIeAuto::Timer1_Timer() {
    if (globals_.ActivityContains("play") && globals_.auto_play &&
        platform_.clock.TickCount() - globals_.last_activity_tick > kWatchdogMs) {
        timed_out_ = true;
        const std::string name =
            globals_.is_player ? platform_.processes.OwnExecutable() : globals_.current_file;
        Log(platform_,
            name + "：" + std::to_string(controls_.lstDtList.ListIndex() + 1) +
                " 行目の再生中、30 秒のあいだページの読み込みが完了しなかったため、終了しました。");
        form_->Close();
        return;
    }
    recording_.Poll();
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
    SetMode("play", true);
    HoldBrowser(nullptr);
}

void frmIeAuto::BrowserOpened(std::shared_ptr<Browser> browser) {
    HoldBrowser(std::move(browser));
    EnterTray();
}

void frmIeAuto::RecordBegan(int row) {
    controls_.lstDtList.SetListIndex(row);
    // How far the run has come: in front, where the task bar shows it too.
    form_->SetCaption("(" + std::to_string(row + 1) + "/" + std::to_string(RecordCount()) + ") " +
                      title_);
}

void frmIeAuto::RecordDone(const RecordReport& report) {
    if (onRecordDone) onRecordDone(report);
}

void frmIeAuto::RunEnded(RunEnd end) {
    switch (end) {
        case RunEnd::kNothingToPlay:
            HoldBrowser(nullptr);
            return;
        case RunEnd::kBadSizeBar:
            return;
        case RunEnd::kNoBrowser:
            SetMode("all", true);
            if (globals_.close_after_play) form_->Close();
            return;
        default:
            break;
    }
    if (globals_.close_after_play || globals_.settings.quit_after_play) {
        if (target_ie_) target_ie_->SetForeground();
        platform_.clock.DoEvents();
        form_->Close();
    } else {
        LeaveTray();
        SetMode("play", false);
    }
}

void frmIeAuto::DocumentComplete(bool /*top*/) {
    globals_.last_activity_tick = platform_.clock.TickCount();
}

void frmIeAuto::BeforeNavigate2(const std::string& /*url*/) {
    globals_.last_activity_tick = platform_.clock.TickCount();
}

void frmIeAuto::NavigateError(const std::string& url, const std::string& reason) {
    page_failed_ = true;
    SetStatus("ページを開けません：" + url + " （" + reason + "）");
}

void frmIeAuto::OnQuit() { HoldBrowser(nullptr); }

}  // namespace tamrin
