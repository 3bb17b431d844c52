#pragma once

#include <windows.h>

#include "platform/windows/window_system.h"
#include "system/system_under_test.h"

namespace tamrin::test {

// Real windows. Messages and key strokes stand for their user.
class WindowsDesk : public Desk {
public:
    WindowSystem& windows() override { return windows_; }
    WindowsClock& clock() override { return clock_; }
    void Show(Form& form) override;
    void Pass(int milliseconds) override;
    void Click(Form& form, std::string_view name, int index) override;
    void Press(Form& form, std::string_view key) override;
    void WhenModal(Form& form, std::function<void()> act) override;

    // Handles events until it is so, for at most five seconds.
    void Until(const std::function<bool()>& state);

    static HWND WindowOf(Form& form) { return static_cast<WindowForm&>(form).window(); }
    static HWND WindowOf(Control& control) {
        return dynamic_cast<WindowControl&>(control).window();
    }

    static void Key(WORD key, bool down);
    // Presses and releases a key while others are held down, and handles the events.
    void Strike(WORD key, std::initializer_list<WORD> held = {});

private:
    WindowsClock clock_;
    WindowsWindowSystem windows_{clock_};
};

}  // namespace tamrin::test
