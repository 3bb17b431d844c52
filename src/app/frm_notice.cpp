#include "app/frm_notice.h"

#include <array>

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
    const Place around = main.GetPlace();
    Place place = form_->GetPlace();
    place.left = around.left + (around.width - place.width) / 2;
    place.top = around.top + (around.height - place.height) / 2;
    form_->SetPlace(place);
    form_->Find("Timer1").onTimer = [this] { form_->Close(); };
    form_->SetTopMost(true);
    form_->SetVisible(true);
}

}  // namespace tamrin
