#include "app/frm_notice.h"

#include <array>

#include "app/brief_form.h"

namespace tamrin {
namespace {

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblText", -1, "", "", {12, 14, 256, 24}, kFixed, kCentered},
    {ControlKind::kTimer, "Timer1", -1, "", "", {}, kFixed, kNoFlags, 1000},
});

const FormSpec kSpec{"frmNotice", "Tamrin", 280, 52, kControls, {}, kNoTitle};

}  // namespace

frmNotice::frmNotice(WindowSystem& windows, const std::string& text, const Form& main)
    : form_(windows.Create(kSpec)) {
    form_->Find("lblText").SetText(text);
    ShowBriefly(*form_, main);
}

}  // namespace tamrin
