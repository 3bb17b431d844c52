#include "app/frm_about.h"

#include <array>

#include "app/license_text.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblTitle", -1, "", "", {16, 14, 508, 20}},
    {ControlKind::kLabel,
     "lblDescription",
     -1,
     "ブラウザーの操作を記録し、再生します。",
     "",
     {16, 38, 508, 20}},
    {ControlKind::kLabel,
     "lblLicense",
     -1,
     "MIT License で利用できます。含まれている著作物のライセンスもあわせて示します。",
     "",
     {16, 62, 508, 20}},
    {ControlKind::kTextBox,
     "txtLicense",
     -1,
     "",
     "",
     {16, 86, 508, 280},
     kFixed,
     kReadOnly | kMultiLine},
    {ControlKind::kButton,
     "cmdSysInfo",
     -1,
     "システム情報(&S)...",
     "システム情報のツールを開きます。",
     {16, 378, 150, 26}},
    {ControlKind::kButton, "cmdOk", -1, "Ok", "", {432, 378, 92, 26}, kFixed, kDefault | kCancel},
});

const FormSpec kSpec{"frmAbout", "バージョン情報", 540, 416, kControls};

}  // namespace

frmAbout::frmAbout(WindowSystem& windows, const std::string& version)
    : windows_(windows), form_(windows.Create(kSpec)) {
    form_->Find("lblTitle").SetText("Tamrin " + version);
    form_->Find("txtLicense").SetText(JoinLines(SplitLines(LicenseText())));
    form_->Find("cmdOk").onClick = [this] { form_->Close(); };
    form_->Find("cmdSysInfo").onClick = [this] { cmdSysInfo_Click(); };
    form_->Find("cmdOk").SetFocus();
}

void frmAbout::cmdSysInfo_Click() {
    if (windows_.ShellOpen("msinfo32.exe")) return;
    windows_.dialogs().MsgBox("システム情報は現在利用できません。", "バージョン情報");
}

}  // namespace tamrin
