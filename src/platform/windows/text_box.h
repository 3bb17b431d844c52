#pragma once

#include <windows.h>

#include "platform/windows/control.h"
#include "platform/windows/hooked_window.h"

namespace tamrin {

// A text box that tells of the mouse, which the window itself keeps to itself.
class WindowTextBox : public WindowControl, private HookedWindow {
public:
    WindowTextBox(WindowForm& form, const ControlSpec& spec, HWND window)
        : WindowControl(form, spec, window), HookedWindow(window) {}

private:
    LRESULT Handle(UINT message, WPARAM wide, LPARAM wider) override;
};

}  // namespace tamrin
