#include "app/frm_input.h"

#include <array>

#include "player/input_data.h"

namespace tamrin {
namespace {

constexpr int kMost = 99999;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblInput", -1, "シナリオを再生する回数(&N)", "", {12, 15, 190, 20}},
    {ControlKind::kTextBox,
     "txtInput",
     -1,
     "",
     "1 から 99999 まで",
     {206, 12, 82, 22},
     kFixed,
     kDigitsOnly},
    {ControlKind::kButton, "cmdOk", -1, "Ok", "", {96, 50, 92, 26}, kFixed, kDefault},
    {ControlKind::kButton, "cmdCancel", -1, "Cancel", "", {196, 50, 92, 26}, kFixed, kCancel},
});

const FormSpec kSpec{"frmInput", "再生回数", 300, 86, kControls};

}  // namespace

frmInput::frmInput(WindowSystem& windows) : windows_(windows), form_(windows.Create(kSpec)) {
    form_->Find("cmdOk").onClick = [this] { cmdOk_Click(); };
    form_->Find("cmdCancel").onClick = [this] { form_->Close(); };
}

std::optional<int> frmInput::Ask(int count, Form& owner) {
    form_->Find("txtInput").SetText(std::to_string(count));
    form_->Find("txtInput").SetFocus();
    form_->ShowModal(owner);
    return result_;
}

void frmInput::cmdOk_Click() {
    const double count = WholeNumber(form_->Find("txtInput").Text()).value_or(0);
    if (count < 1 || count > kMost) {
        windows_.dialogs().MsgBox("1 から 99999 までの数を入力して下さい。", "再生回数");
        form_->Find("txtInput").SetFocus();
        return;
    }
    result_ = static_cast<int>(count);
    form_->Close();
}

}  // namespace tamrin
