#include "app/frm_splash.h"

#include <array>

namespace tamrin {
namespace {

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kLabel, "lblTitle", -1, "", "", {12, 26, 256, 24}, kFixed, kCentered},
    {ControlKind::kLabel,
     "lblDescription",
     -1,
     "ブラウザー操作の記録と再生",
     "",
     {12, 56, 256, 20},
     kFixed,
     kCentered},
    {ControlKind::kTimer, "Timer1", -1, "", "", {}, kFixed, kNoFlags, 1200},
});

const FormSpec kSpec{"frmSplash", "Tamrin", 280, 104, kControls, {}, kNoTitle};

}  // namespace

frmSplash::frmSplash(WindowSystem& windows, const std::string& version, const Form& main)
    : form_(windows.Create(kSpec)) {
    form_->Find("lblTitle").SetText("Tamrin " + version);
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
