#include "app/frm_splash.h"

#include <array>

#include "app/brief_form.h"

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
    ShowBriefly(*form_, main);
}

}  // namespace tamrin
