#include "app/frm_setting.h"

#include <array>
#include <cmath>

#include "app/paths.h"
#include "app/settings_file.h"
#include "player/input_data.h"

namespace tamrin {
namespace {

constexpr std::string_view kFolderTip = "保存先フォルダ名　空白時はプログラムと同じフォルダ";
constexpr std::string_view kWaitTip = "応答が返るまでの最大待ち時間（秒）";
constexpr std::string_view kBrowserTip = "Edge / Chrome の実行ファイル　空白時は自動で探します";
constexpr std::string_view kKindTip =
    "自動：Internet Explorer があればそれを、なければ Edge / Chrome を使う";

constexpr auto kSettingControls = std::to_array<ControlSpec>({
    {ControlKind::kFrame, "frSave", "保存の設定", "", {8, 6, 424, 86}},
    {ControlKind::kLabel, "Label1", "既定の保存先", "", {20, 30, 94, 20}},
    {ControlKind::kTextBox, "txtSaveFolderPath", "", kFolderTip, {118, 27, 256, 22}},
    {ControlKind::kButton, "cmdSaveFolder", "...", "保存先のフォルダを指定", {380, 25, 40, 26}},
    {ControlKind::kButton,
     "cmdSetDefault",
     "既定値に戻す",
     "既定値に戻します。",
     {304, 57, 116, 26}},

    {ControlKind::kFrame, "frPlay", "再生時の設定", "", {8, 96, 424, 106}},
    {ControlKind::kLabel, "lblMaxWaitTime", "応答最大待ち時間", kWaitTip, {20, 120, 120, 20}},
    {ControlKind::kComboBox, "cmbMaxWaitTime", "", kWaitTip, {144, 117, 80, 22}},
    {ControlKind::kCheckBox,
     "chkQuitAfterPlay",
     "再生後に閉じる",
     "再生後にフォームを閉じて終了する",
     {20, 146, 380, 22}},
    {ControlKind::kCheckBox,
     "chkMouseClick",
     "クリック：マウスによる実クリック",
     "セキュリティページに有効",
     {20, 171, 380, 22}},

    {ControlKind::kFrame, "frSecurity", "セキュリティ", "", {8, 206, 424, 52}},
    {ControlKind::kCheckBox,
     "chkCipherData",
     "記録データの暗号化",
     "記録データ（xx.csv）を暗号化します",
     {20, 227, 380, 22}},

    {ControlKind::kFrame, "frRec", "記録時の設定", "", {8, 262, 424, 52}},
    {ControlKind::kCheckBox,
     "chkRecChangeData",
     "変更データのみ記録",
     "データが変更されていない場合は、記録されない。",
     {20, 283, 380, 22}},

    {ControlKind::kFrame, "frBrowser", "ブラウザー", "", {8, 318, 424, 90}},
    {ControlKind::kLabel, "lblKind", "種類", kKindTip, {20, 342, 94, 20}},
    {ControlKind::kOptionButton, {"optBrowser", 0}, "自動", kKindTip, {118, 338, 60, 26}},
    {ControlKind::kOptionButton,
     {"optBrowser", 1},
     "Internet Explorer",
     kKindTip,
     {180, 338, 128, 26}},
    {ControlKind::kOptionButton, {"optBrowser", 2}, "Edge / Chrome", kKindTip, {310, 338, 110, 26}},
    {ControlKind::kLabel, "lblBrowser", "実行ファイル", kBrowserTip, {20, 374, 94, 20}},
    {ControlKind::kTextBox, "txtBrowser", "", kBrowserTip, {118, 371, 256, 22}},
    {ControlKind::kButton, "cmdBrowser", "...", "ブラウザーを指定", {380, 369, 40, 26}},

    {ControlKind::kCheckBox,
     "chkAutoPoint",
     "タグ自動ポイント",
     "マウスポインタが自動でタグを指し示します。",
     {12, 418, 180, 22}},
    {ControlKind::kButton,
     {"cmdClose", 0},
     "Ok",
     "保存して、このフォームを閉じます。",
     {240, 416, 92, 26},
     kFixed,
     kDefault},
    {ControlKind::kButton,
     {"cmdClose", 1},
     "Cancel",
     "保存せずに、このフォームを閉じます。",
     {340, 416, 92, 26},
     kFixed,
     kCancel},
});

const FormSpec kSettingForm{"frmSetting", "設定", 440, 450, kSettingControls};

}  // namespace

frmSetting::frmSetting(Globals& globals, const Platform& platform)
    : globals_(globals),
      platform_(platform),
      form_(platform.windows.Create(kSettingForm)),
      txtSaveFolderPath(form_->Find("txtSaveFolderPath")),
      cmbMaxWaitTime(form_->Combo("cmbMaxWaitTime")),
      chkQuitAfterPlay(form_->Find("chkQuitAfterPlay")),
      chkMouseClick(form_->Find("chkMouseClick")),
      chkCipherData(form_->Find("chkCipherData")),
      chkRecChangeData(form_->Find("chkRecChangeData")),
      chkAutoPoint(form_->Find("chkAutoPoint")),
      txtBrowser(form_->Find("txtBrowser")) {
    BindEvents();
}

void frmSetting::BindEvents() {
    txtSaveFolderPath.onChange = [this] { txtSaveFolderPath_Change(); };
    chkAutoPoint.onClick = [this] { globals_.settings.auto_point = chkAutoPoint.Checked(); };
    chkRecChangeData.onClick = [this] {
        globals_.settings.rec_change_only = chkRecChangeData.Checked();
    };
    form_->Find("cmdSaveFolder").onClick = [this] { cmdSaveFolder_Click(); };
    form_->Find("cmdBrowser").onClick = [this] { cmdBrowser_Click(); };
    form_->Find("cmdSetDefault").onClick = [this] { cmdSetDefault_Click(); };
    for (const int index : {0, 1}) {
        form_->Find("cmdClose", index).onClick = [this, index] { cmdClose_Click(index); };
    }
}

void frmSetting::ShowModal(Form& owner) {
    cmbMaxWaitTime.SetItems(
        {"3", "5", "7", "10", "15", "20", "30", "40", "50", "60", "90", "120", "150"});
    const Options& options = globals_.options;
    txtBrowser.SetText(options.kept_browser_path.value_or(options.browser_path));
    form_->Find("optBrowser", static_cast<int>(options.browser_kind)).SetChecked(true);
    Form_Load();
    form_->ShowModal(owner);
}

void frmSetting::Form_Load() {
    // A copy, because showing a value may store it.
    const Settings settings = globals_.settings;
    txtSaveFolderPath.SetText(settings.save_folder_path);
    txtSaveFolderPath_Change();
    cmbMaxWaitTime.SetText(std::to_string(settings.max_wait_time));
    chkQuitAfterPlay.SetChecked(settings.quit_after_play);
    chkMouseClick.SetChecked(settings.mouse_click);
    chkCipherData.SetChecked(settings.cipher);
    chkRecChangeData.SetChecked(settings.rec_change_only);
    chkAutoPoint.SetChecked(settings.auto_point);
}

std::string frmSetting::SaveFolder() const {
    const Files& files = platform_.files;
    const std::string program = files.ProgramFolder();
    const std::string folder = ResolvePath(StripQuotes(txtSaveFolderPath.Text()), program, files);
    return folder.empty() ? program : folder;
}

void frmSetting::txtSaveFolderPath_Change() {
    const bool exists = platform_.files.IsFolder(SaveFolder());
    txtSaveFolderPath.SetTextColor(exists ? TextColor::kNormal : TextColor::kRed);
}

void frmSetting::cmdSaveFolder_Click() {
    const Files& files = platform_.files;
    const std::string folder =
        platform_.windows.dialogs().OpenFolder("既定フォルダの指定", SaveFolder());
    if (folder.empty()) return;
    txtSaveFolderPath.SetText(RelativePath(folder, files.ProgramFolder(), files));
}

void frmSetting::cmdBrowser_Click() {
    const std::string path = platform_.windows.dialogs().OpenFile(
        {"ブラウザーの指定", "プログラム(*.exe)", "*.exe", txtBrowser.Text()});
    if (!path.empty()) txtBrowser.SetText(path);
}

void frmSetting::cmdSetDefault_Click() {
    SetDefaultConf(globals_.settings, platform_.windows.Screen());
    Form_Load();
}

void frmSetting::cmdClose_Click(int index) {
    if (index == 0) {
        Settings& settings = globals_.settings;
        settings.auto_point = chkAutoPoint.Checked();
        settings.rec_change_only = chkRecChangeData.Checked();
        settings.cipher = chkCipherData.Checked();
        settings.save_folder_path = txtSaveFolderPath.Text();
        settings.mouse_click = chkMouseClick.Checked();
        settings.quit_after_play = chkQuitAfterPlay.Checked();
        settings.max_wait_time =
            static_cast<int>(std::nearbyint(LeadingNumber(cmbMaxWaitTime.Text())));
        Options& options = globals_.options;
        const std::string browser = StripQuotes(txtBrowser.Text());
        if (browser != options.kept_browser_path.value_or(options.browser_path)) {
            options.browser_path = browser;
            options.kept_browser_path.reset();
        }
        for (const int kind : {0, 1, 2}) {
            if (form_->Find("optBrowser", kind).Checked())
                options.browser_kind = static_cast<BrowserKind>(kind);
        }
    }
    form_->Close();
}

}  // namespace tamrin
