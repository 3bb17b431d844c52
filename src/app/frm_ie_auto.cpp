#include "app/frm_ie_auto.h"

#include "app/paths.h"
#include "player/input_data.h"

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
      player_(globals, platform.clock, platform.launcher, *this) {
    BindEvents();
}

frmIeAuto::~frmIeAuto() = default;

void frmIeAuto::BindEvents() {
    controls_.cmdPlay.onClick = [this] { cmdPlay_Click(); };
    controls_.mnuPlay.onClick = [this] { cmdPlay_Click(); };
    controls_.cmdStop.onClick = [this] { cmdStop_Click(); };
    controls_.mnuSave.onClick = [this] { mnuSave_Click(); };
    controls_.mnuSaveAs.onClick = [this] { mnuSaveAs_Click(); };
    controls_.mnuClose.onClick = [this] { form_->Close(); };
    controls_.Timer1.onTimer = [this] { Timer1_Timer(); };
    controls_.lstCsv.onContext = [this] { lstCsv_MouseDown(); };
    controls_.optDispNothing.onClick = [this] { optDisp_Click(0); };
    controls_.optDispTags.onClick = [this] { optDisp_Click(1); };
    controls_.optDispFiles.onClick = [this] { optDisp_Click(2); };
    form_->onQueryUnload = [this] { return PromptSaveChanges(); };
    form_->onUnload = [this] {
        closed_ = true;
        globals_.activity.clear();
        HoldBrowser(nullptr);
    };
}

void frmIeAuto::MyTitle(std::string_view file_name) {
    std::string title = "Tamrin " + globals_.version_text;
    if (!file_name.empty()) title += " < " + std::string(FileNameOf(file_name)) + " >";
    form_->SetCaption(title);
}

void frmIeAuto::cmdPlay_Click() {
    if (playing_) return;
    playing_ = true;
    page_failed_ = false;
    timed_out_ = false;
    const RunEnd end = player_.Play();
    last_run_ = timed_out_ ? RunEnd::kTimedOut : end;
    playing_ = false;
}

void frmIeAuto::cmdStop_Click() {
    SetMode("all", true);
    globals_.activity.clear();
    globals_.activity_detail.clear();
    const std::shared_ptr<Browser> browser = target_ie_;
    HoldBrowser(nullptr);
    if (browser) browser->SetForeground();
}

void frmIeAuto::Timer1_Timer() {
    if (globals_.ActivityContains("play") && globals_.auto_play &&
        platform_.clock.TickCount() - globals_.last_activity_tick > kWatchdogMs) {
        timed_out_ = true;
        form_->Close();
    }
}

void frmIeAuto::lstCsv_MouseDown() {
    if (!globals_.activity.empty()) {
        ShowMessage("「停止」して下さい！", "実行中は不可");
        return;
    }
    form_->PopUp("mnuListEdit");
}

void frmIeAuto::optDisp_Click(int index) {
    globals_.settings.disp = index;
    controls_.lstDetail.SetVisible(index == 1);
    controls_.lstCsv.SetVisible(index == 2);
}

void frmIeAuto::ShowMessage(const std::string& text, const std::string& title) {
    platform_.windows.dialogs().MsgBox(text, title.empty() ? "Tamrin" : title);
}

int frmIeAuto::GetRepeat() {
    // The caption reads "再生回数変更：現在値 3 回".
    const std::string caption = controls_.mnuRepeat.Text();
    const auto blank = caption.find(' ');
    if (blank == std::string::npos) return 0;
    return static_cast<int>(LeadingNumber(std::string_view(caption).substr(blank + 1)));
}

void frmIeAuto::HoldBrowser(std::shared_ptr<Browser> browser) {
    event_ie_.reset();
    target_ie_ = std::move(browser);
    if (target_ie_) event_ie_ = target_ie_->Connect(*this);
}

Rect frmIeAuto::WindowRect() {
    const Place place = form_->GetPlace();
    return {static_cast<double>(place.left), static_cast<double>(place.top),
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

void frmIeAuto::RecordDone(const RecordReport& report) {
    if (onRecordDone) onRecordDone(report);
}

void frmIeAuto::DocumentComplete(bool /*top*/) {
    globals_.last_activity_tick = platform_.clock.TickCount();
    globals_.browser_status = BrowserStatus::kExec;
}

void frmIeAuto::BeforeNavigate2(const std::string& /*url*/) {
    globals_.last_activity_tick = platform_.clock.TickCount();
    globals_.browser_status = BrowserStatus::kRecvWait;
}

void frmIeAuto::NavigateError(const std::string& url, const std::string& reason) {
    page_failed_ = true;
    SetStatus("ページを開けません：" + url + " （" + reason + "）");
}

void frmIeAuto::OnQuit() { HoldBrowser(nullptr); }

}  // namespace tamrin
