#include "app/frm_simple_edit.h"

#include <array>

#include "platform/text.h"

namespace tamrin {
namespace {

constexpr unsigned kCorner = kMoveRight | kMoveBottom;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kTextBox,
     "txtText",
     -1,
     "",
     "",
     {8, 8, 504, 256},
     kStretchRight | kStretchBottom,
     kMultiLine},
    {ControlKind::kButton, "cmdOk", -1, "Ok", "", {320, 274, 92, 26}, kCorner},
    {ControlKind::kButton, "cmdCancel", -1, "Cancel", "", {420, 274, 92, 26}, kCorner, kCancel},
});

const FormSpec kSpec{"frmSimpleEdit", "テキストで編集", 520, 308, kControls, {}, kResizable};

}  // namespace

frmSimpleEdit::frmSimpleEdit(WindowSystem& windows) : form_(windows.Create(kSpec)) {
    form_->Find("cmdOk").onClick = [this] {
        result_ = SplitLines(form_->Find("txtText").Text());
        form_->Close();
    };
    form_->Find("cmdCancel").onClick = [this] { form_->Close(); };
}

std::optional<std::vector<std::string>> frmSimpleEdit::Edit(const std::vector<std::string>& lines,
                                                            Form& owner) {
    form_->Find("txtText").SetText(JoinLines(lines));
    form_->ShowModal(owner);
    return result_;
}

}  // namespace tamrin
