#include "platform/windows/timer.h"

namespace tamrin {

WindowTimer::WindowTimer(HWND form, const ControlSpec& spec, UINT_PTR id)
    : StoredControl("", spec.flags), form_(form), spec_(spec), id_(id) {
    if (Enabled()) Start();
}

WindowTimer::~WindowTimer() { KillTimer(form_, id_); }

void WindowTimer::Start() { SetTimer(form_, id_, static_cast<UINT>(spec_.interval), nullptr); }

void WindowTimer::SetEnabled(bool enabled) {
    if (enabled == Enabled()) return;
    StoredControl::SetEnabled(enabled);
    if (enabled) {
        Start();
    } else {
        KillTimer(form_, id_);
    }
}

void WindowTimer::Tick() {
    // A tick may still be in the queue when the timer is stopped.
    if (ticking_ || !Enabled()) return;
    ticking_ = true;
    Raise(onTimer);
    ticking_ = false;
}

}  // namespace tamrin
