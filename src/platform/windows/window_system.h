#pragma once

#include <memory>
#include <string>

#include "platform/window_system.h"
#include "platform/windows/clock.h"
#include "platform/windows/dialogs.h"
#include "platform/windows/window_form.h"

namespace tamrin {

// The windows of Windows. `clock` handles the events while a form is modal.
class WindowsWindowSystem : public WindowSystem {
public:
    explicit WindowsWindowSystem(WindowsClock& clock);

    std::unique_ptr<Form> Create(const FormSpec& spec) override;
    Dialogs& dialogs() override { return dialogs_; }
    Place Screen() const override;
    int TwipsPerPixelY() const override;
    std::string ClipboardText() const override;
    bool SetClipboardText(const std::string& text) override;
    bool CtrlHeld() const override;
    bool ShellOpen(const std::string& path) override;

private:
    // The form in front, null when none is visible.
    HWND Front() const;

    WindowsClock& clock_;
    WindowForms forms_;
    WindowsDialogs dialogs_;
};

}  // namespace tamrin
