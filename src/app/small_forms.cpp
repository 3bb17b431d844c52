#include "app/small_forms.h"

#include <array>

#include "app/settings_file.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr auto kSplashControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblTitle", "", "", {12, 26, 256, 24}, kFixed, kCentered},
    {ControlKind::kLabel,
     "lblDescription",
     "ブラウザー操作の記録と再生",
     "",
     {12, 56, 256, 20},
     kFixed,
     kCentered},
    {ControlKind::kTimer, "Timer1", "", "", {}, kFixed, kNoFlags, 1200},
});
const FormSpec kSplash{"frmSplash", "Tamrin", 280, 104, kSplashControls, {}, kNoTitle};

constexpr auto kNoticeControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblText", "", "", {12, 14, 256, 24}, kFixed, kCentered},
    {ControlKind::kTimer, "Timer1", "", "", {}, kFixed, kNoFlags, 1000},
});
const FormSpec kNotice{"frmNotice", "Tamrin", 280, 52, kNoticeControls, {}, kNoTitle};

constexpr auto kAboutControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblTitle", "", "", {16, 14, 508, 20}},
    {ControlKind::kLabel,
     "lblDescription",
     "ブラウザーの操作を記録し、再生します。",
     "",
     {16, 38, 508, 20}},
    {ControlKind::kLabel,
     "lblLicense",
     "MIT License で利用できます。含まれている著作物のライセンスもあわせて示します。",
     "",
     {16, 62, 508, 20}},
    {ControlKind::kTextBox,
     "txtLicense",
     "",
     "",
     {16, 86, 508, 280},
     kFixed,
     kReadOnly | kMultiLine},
    {ControlKind::kButton,
     "cmdSysInfo",
     "システム情報(&S)...",
     "システム情報のツールを開きます。",
     {16, 378, 150, 26}},
    {ControlKind::kButton, "cmdOk", "Ok", "", {432, 378, 92, 26}, kFixed, kDefault | kCancel},
});
const FormSpec kAbout{"frmAbout", "バージョン情報", 540, 416, kAboutControls};

constexpr auto kInputControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblInput", "シナリオを再生する回数(&N)", "", {12, 15, 190, 20}},
    {ControlKind::kTextBox,
     "txtInput",
     "",
     "1 から 99999 まで",
     {206, 12, 82, 22},
     kFixed,
     kDigitsOnly},
    {ControlKind::kButton, "cmdOk", "Ok", "", {96, 50, 92, 26}, kFixed, kDefault},
    {ControlKind::kButton, "cmdCancel", "Cancel", "", {196, 50, 92, 26}, kFixed, kCancel},
});
const FormSpec kInput{"frmInput", "再生回数", 300, 86, kInputControls};

// Shows a text in the form's label until the interval of its timer has passed.
std::unique_ptr<Form> ShowBriefly(WindowSystem& windows, const FormSpec& spec,
                                  std::string_view label, const std::string& text,
                                  const Form& main) {
    std::unique_ptr<Form> form = windows.Create(spec);
    form->Find(label).SetText(text);
    const Place around = main.GetPlace();
    Place place = form->GetPlace();
    place.left = around.left + (around.width - place.width) / 2;
    place.top = around.top + (around.height - place.height) / 2;
    form->SetPlace(place);
    form->Find("Timer1").onTimer = [shown = form.get()] { shown->Close(); };
    form->SetTopMost(true);
    form->SetVisible(true);
    return form;
}

}  // namespace

std::unique_ptr<Form> ShowSplash(WindowSystem& windows, const std::string& version,
                                 const Form& main) {
    return ShowBriefly(windows, kSplash, "lblTitle", "Tamrin " + version, main);
}

std::unique_ptr<Form> ShowNotice(WindowSystem& windows, const std::string& text, const Form& main) {
    return ShowBriefly(windows, kNotice, "lblText", text, main);
}

void ShowAbout(WindowSystem& windows, const std::string& version, Form& owner) {
    const std::unique_ptr<Form> form = windows.Create(kAbout);
    form->Find("lblTitle").SetText("Tamrin " + version);
    form->Find("txtLicense").SetText(JoinLines(SplitLines(LicenseText())));
    form->Find("cmdOk").onClick = [&] { form->Close(); };
    form->Find("cmdSysInfo").onClick = [&] {
        if (windows.ShellOpen("msinfo32.exe")) return;
        windows.dialogs().MsgBox("システム情報は現在利用できません。", "バージョン情報");
    };
    form->Find("cmdOk").SetFocus();
    form->ShowModal(owner);
}

std::optional<int> AskPlayCount(WindowSystem& windows, int count, Form& owner) {
    const std::unique_ptr<Form> form = windows.Create(kInput);
    Control& input = form->Find("txtInput");
    std::optional<int> result;
    form->Find("cmdOk").onClick = [&] {
        result = PlayCountOf(input.Text());
        if (result) {
            form->Close();
        } else {
            windows.dialogs().MsgBox(kPlayCountFault, "再生回数");
            input.SetFocus();
        }
    };
    form->Find("cmdCancel").onClick = [&] { form->Close(); };
    input.SetText(std::to_string(count));
    input.SetFocus();
    form->ShowModal(owner);
    return result;
}

}  // namespace tamrin
