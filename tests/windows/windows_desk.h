#pragma once

#include <windows.h>

#include "platform/windows/clock.h"
#include "platform/windows/window_system.h"
#include "system/system_under_test.h"

namespace tamrin::test {

// Real windows and, for their user, messages and key strokes.
class WindowsDesk : public Desk {
public:
    WindowSystem& windows() override { return windows_; }
    Clock& clock() override { return clock_; }
    void Pass(int milliseconds) override;
    void Click(Form& form, std::string_view name, int index) override;
    void Press(Form& form, std::string_view key) override;
    void WhenModal(Form& form, std::function<void()> act) override;

    void AddSource(std::function<void()> source) { clock_.AddSource(std::move(source)); }

    static HWND WindowOf(Form& form) { return static_cast<WindowForm&>(form).window(); }
    static HWND WindowOf(Control& control) {
        return dynamic_cast<WindowControl&>(control).window();
    }

    // Presses and releases a key while others are held down.
    void Strike(WORD key, std::initializer_list<WORD> held = {});

private:
    WindowsClock clock_;
    WindowsWindowSystem windows_{clock_};
};

}  // namespace tamrin::test
