#include "app/record_commands.h"

#include <algorithm>

#include "app/small_forms.h"

namespace tamrin {
namespace {

constexpr int kAttachPasses = 100;  // of 10 ms each, until a window has come to the front

constexpr int kMinBrowser = 400;  // pixels, of a browser window that can be worked in

constexpr const char* kQuestion =
    "現在の記録データは破棄して新規記録しますか？\r\n"
    "　「はい」→新規記録\r\n"
    "　「いいえ」→追記記録\r\n"
    "　「キャンセル」→中止";

constexpr const char* kNoPage = "対象のWebページを表示（アクティブに）して下さい。";

constexpr const char* kOfferBrowser =
    "\r\n\r\n記録できるブラウザーが開かれていません。記録用ブラウザーを開きますか？\r\n"
    "　「OK」→記録用ブラウザーを開く\r\n"
    "　「キャンセル」→中止";

constexpr const char* kPassword =
    "記録した内容にパスワードが含まれています。\r\n\r\n"
    "シナリオのファイルには、パスワードがそのまま読める形で保存されます。"
    "設定の「記録データの暗号化」を選ぶと見えにくくなりますが、隠すだけで、守るものではありません。"
    "ファイルの置き場所にご注意ください。";

// Where a browser window that this form covers shows the most of itself: moved, and shrunk where it
// must be, to one side of the form. One that is not covered stays.
WindowPlace Beside(const WindowPlace& window, const Place& form, const Place& screen) {
    const int right = form.left + form.width;
    const int bottom = form.top + form.height;
    if (window.left >= right || window.left + window.width <= form.left || window.top >= bottom ||
        window.top + window.height <= form.top) {
        return window;
    }
    const Place sides[] = {{0, 0, form.left, screen.height},
                           {right, 0, screen.width - right, screen.height},
                           {0, 0, screen.width, form.top},
                           {0, bottom, screen.width, screen.height - bottom}};
    WindowPlace best{};
    for (const Place& side : sides) {
        const int width = std::min(window.width, side.width);
        const int height = std::min(window.height, side.height);
        if (width < kMinBrowser || height < kMinBrowser ||
            width * height <= best.width * best.height) {
            continue;
        }
        best = {std::clamp(window.left, side.left, side.left + side.width - width),
                std::clamp(window.top, side.top, side.top + side.height - height), width, height};
    }
    return best.width > 0 ? best : window;
}

}  // namespace

RecordCommands::RecordCommands(Globals& globals, const Platform& platform, Form& form,
                               MainControls& controls, RecordEditor& records)
    : globals_(globals),
      platform_(platform),
      form_(form),
      controls_(controls),
      records_(records),
      attachment_(globals, platform.browsers, controls.txtUrl, controls.txthWnd),
      recorder_(globals, platform.clock, *this),
      recovery_(platform.files, platform.codec),
      tags_(globals, controls, records, [this] { return Page(); }) {
    controls_.tmrStop.onTimer = [this] { Stop(); };
}

void RecordCommands::cmdRec_Click() {
    if (starting_ || !globals_.activity.empty()) return;
    starting_ = true;
    Begin();
    starting_ = false;
}

void RecordCommands::Begin() {
    SetStatus("");
    RecordKind kind = RecordKind::kNew;
    bool discard = false;
    if (RecordCount() > 0 && globals_.unsaved) {
        const Answer answer =
            platform_.windows.dialogs().MsgBox(kQuestion, "既存データあり", Buttons::kYesNoCancel);
        if (answer == Answer::kCancel) return;
        if (answer == Answer::kNo) kind = RecordKind::kAppend;
        discard = answer == Answer::kYes;
    }
    if (!Attached() && !WaitForBrowser()) {
        AskForPage();
        return;
    }
    if (discard) records_.Replace(0, RecordCount(), {});
    controls_.optDispNothing.SetChecked(true);
    controls_.lstCsv.SetListIndex(-1);
    Start(attachment_.browser(), kind, RecoveryFile::DefaultPath(platform_.files));
}

std::shared_ptr<Browser> RecordCommands::Page() const {
    return globals_.ActivityContains("rec") ? recorder_.browser() : attachment_.browser();
}

bool RecordCommands::Attached() const {
    return attachment_.browser() && attachment_.browser()->Alive() &&
           !controls_.txtUrl.Text().empty();
}

bool RecordCommands::WaitForBrowser() {
    const auto windows = platform_.browsers.Visible();
    if (!windows.empty()) windows.front()->SetForeground();
    for (int pass = 0; pass < kAttachPasses; ++pass) {
        platform_.clock.DoEvents();
        if (pass % 10 == 0) attachment_.AttachActiveBrowser();
        if (Attached()) return globals_.activity.empty();
        platform_.clock.Sleep(10);
    }
    return false;
}

void RecordCommands::AskForPage() {
    if (!platform_.browsers.Visible().empty()) {
        ShowMessage(kNoPage, "Tamrin");
        return;
    }
    const std::string question = std::string(kNoPage) + kOfferBrowser;
    if (platform_.windows.dialogs().MsgBox(question, "Tamrin", Buttons::kOkCancel) == Answer::kOk) {
        mnuRecBrowser_Click();
    }
}

void RecordCommands::mnuRecBrowser_Click() {
    std::string why;
    const std::shared_ptr<Browser> browser = platform_.browsers.Open("", why);
    if (!browser) {
        ShowMessage(why, "ブラウザーを起動できません");
        return;
    }
    const WindowPlace opened = browser->State().place;
    const WindowPlace beside = Beside(opened, form_.ShownPlace(), platform_.windows.Screen());
    if (beside != opened) browser->SetPlace(beside);
}

void RecordCommands::Start(const std::shared_ptr<Browser>& browser, RecordKind kind,
                           const std::string& recovery) {
    recovery_.Begin(recovery, records_.Lines(), globals_.settings.cipher);
    recorder_.Start(browser, kind);
    if (onMode) onMode("rec");
}

bool RecordCommands::Stop() {
    if (!globals_.ActivityContains("rec")) {
        controls_.tmrStop.SetEnabled(false);
        return true;
    }
    if (stopping_) return false;
    if (recorder_.Handling()) {
        // The event that is being recorded, and those queued behind it, go first.
        controls_.tmrStop.SetEnabled(true);
        return false;
    }
    controls_.tmrStop.SetEnabled(false);
    stopping_ = true;
    recorder_.Finish();
    const std::shared_ptr<Browser> browser = recorder_.browser();
    recorder_.Release();
    globals_.activity.clear();
    if (onMode) onMode("all");
    TellOfPassword();
    if (browser) browser->SetForeground();
    stopping_ = false;
    if (onStopped) onStopped();
    return true;
}

// Called after the recording: a message box during it would take the focus from the page.
void RecordCommands::TellOfPassword() {
    if (told_of_password_ || !recorder_.has_password()) return;
    told_of_password_ = true;
    ShowMessage(kPassword, "パスワードの記録");
}

void RecordCommands::Poll() {
    attachment_.AttachActiveBrowser();
    if (attachment_.TakeChanged()) tags_.Outdate();
}

void RecordCommands::OfferRecovery() {
    const auto lines = recovery_.TakeOver();
    if (!lines) return;
    const Answer answer = platform_.windows.dialogs().MsgBox(
        "前回、保存されなかった記録が " + std::to_string(lines->size()) +
            " 行残っています。復元しますか？\r\n"
            "　「はい」→復元\r\n　「いいえ」→破棄",
        "記録の復元", Buttons::kYesNo);
    if (answer != Answer::kYes) {
        recovery_.Remove();
        return;
    }
    records_.Replace(0, RecordCount(), *lines);
}

void RecordCommands::AppendRecord(const std::string& line) {
    records_.Replace(RecordCount(), 0, {line});
    if (!recovery_.Append(line)) SetStatus("復元用のファイルに書き込めません。");
}

void RecordCommands::ShowMessage(const std::string& text, const std::string& title) {
    platform_.windows.dialogs().MsgBox(text, title);
}

void RecordCommands::ShowNotice(const std::string& text) {
    notice_ = tamrin::ShowNotice(platform_.windows, text, form_);
}

void RecordCommands::BrowserClosed() {
    SetStatus("ブラウザーが閉じられました。「停止」を押すと記録を終わります。");
    tags_.Outdate();
}

}  // namespace tamrin
