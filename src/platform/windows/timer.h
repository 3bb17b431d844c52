#pragma once

#include <windows.h>

#include "platform/windows/control.h"

namespace tamrin {

// A timer of a form. Its ticks arrive as WM_TIMER messages of the form's window.
class WindowTimer : public StoredControl {
public:
    WindowTimer(HWND form, const ControlSpec& spec, UINT_PTR id);
    ~WindowTimer() override;
    WindowTimer(const WindowTimer&) = delete;
    WindowTimer& operator=(const WindowTimer&) = delete;

    void SetEnabled(bool enabled) override;

    // The interval has passed. A handler that waits is not called inside itself: ticks that arrive
    // meanwhile are dropped.
    void Tick();

    const ControlSpec& spec() const { return spec_; }
    UINT_PTR id() const { return id_; }

private:
    void Start();

    HWND form_;
    const ControlSpec spec_;
    UINT_PTR id_;
    bool ticking_ = false;
};

}  // namespace tamrin
