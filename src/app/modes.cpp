#include "app/frm_ie_auto.h"

namespace tamrin {

void frmIeAuto::SetMode(std::string_view mode, bool on) {
    const bool has_records = controls_.lstDtList.Count() > 0;
    if (mode == "all") {
        controls_.cmdRec.SetEnabled(true);
        controls_.cmdPlay.SetEnabled(has_records);
        controls_.cmdStop.SetEnabled(false);
    } else if (mode == "rec" || mode == "play") {
        controls_.cmdRec.SetEnabled(!on);
        controls_.cmdPlay.SetEnabled(!on);
        controls_.cmdStop.SetEnabled(on);
    } else if (mode == "stop") {
        if (globals_.ActivityContains("rec")) {
            controls_.cmdRec.SetEnabled(on);
        } else if (globals_.ActivityContains("play")) {
            controls_.cmdRec.SetEnabled(!on);
        }
        controls_.cmdPlay.SetEnabled(has_records);
        controls_.cmdStop.SetEnabled(!on);
    } else if (mode == "play check") {
        controls_.cmdPlay.SetEnabled(has_records);
    }
    form_->Find("mnuRec").SetEnabled(controls_.cmdRec.Enabled());
    form_->Find("mnuPlay").SetEnabled(controls_.cmdPlay.Enabled());
    form_->Find("mnuStop").SetEnabled(controls_.cmdStop.Enabled());
    form_->Find("mnuMakeExe")
        .SetEnabled(has_records && controls_.cmdPlay.Enabled() && !globals_.is_player);
}

}  // namespace tamrin
