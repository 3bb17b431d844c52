#pragma once

#include "platform/windows/control.h"
#include "platform/windows/hooked_window.h"

namespace tamrin {

// A level bar that is dragged up and down with the mouse, within its form.
class WindowSplitter : public WindowControl, private HookedWindow {
public:
    WindowSplitter(WindowForm& form, const ControlSpec& spec, HWND window)
        : WindowControl(form, spec, window), HookedWindow(window) {}

private:
    LRESULT Handle(UINT message, WPARAM wide, LPARAM wider) override;
    void DragTo(int y);

    int grip_ = 0;  // how far below its upper edge the mouse holds it
};

}  // namespace tamrin
