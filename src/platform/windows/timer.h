#pragma once

#include <windows.h>

#include "platform/form.h"
#include "platform/windows/stored_control.h"

namespace tamrin {

// A timer of a form, which gets its ticks as messages.
class WindowTimer : public StoredControl {
public:
    WindowTimer(HWND form, const ControlSpec& spec, UINT_PTR id);
    ~WindowTimer() override;
    WindowTimer(const WindowTimer&) = delete;
    WindowTimer& operator=(const WindowTimer&) = delete;

    void SetEnabled(bool enabled) override;

    // The interval has passed. A handler that waits is not called again inside itself: ticks that
    // come meanwhile are left out.
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
