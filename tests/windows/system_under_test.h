#pragma once

#include <windows.h>

#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "platform/windows/window_system.h"

namespace tamrin::test {

using SystemFiles = WindowsFiles;
using SystemProcesses = WindowsProcesses;
using SystemTextCodec = WindowsTextCodec;

// Real windows. Messages and key strokes stand for their user. For the functions without a comment
// see the header of the same name for the forms in memory.
class Desk {
public:
    static constexpr WORD kNoKey = 0xE8;  // a key that no program knows

    static HWND WindowOf(Form& form) { return static_cast<WindowForm&>(form).window(); }
    static HWND WindowOf(Control& control) {
        return dynamic_cast<WindowControl&>(control).window();
    }

    void Show(Form& form) {
        form.SetVisible(true);
        SetForegroundWindow(WindowOf(form));
        Until([&form] { return GetForegroundWindow() == WindowOf(form); });
    }

    // Handles events until the state is reached, for at most five seconds.
    void Until(const std::function<bool()>& state) {
        for (int i = 0; i < 5000 && !state(); ++i) {
            clock.Sleep(1);
            clock.DoEvents();
        }
    }

    void Click(Form& form, std::string_view name, int index = -1) {
        SendMessageW(WindowOf(form.Find(name, index)), BM_CLICK, 0, 0);
        clock.DoEvents();
    }

    static void Key(WORD key, bool down) {
        keybd_event(static_cast<BYTE>(key), 0, down ? 0 : KEYEVENTF_KEYUP, 0);
    }

    // Presses and releases a key while another is held down, and handles the events.
    void Strike(WORD key, WORD held = kNoKey) {
        Key(held, true);
        Key(key, true);
        Key(key, false);
        Key(held, false);
        clock.DoEvents();
    }

    void Press(Form& form, std::string_view key) {
        SetForegroundWindow(WindowOf(form));
        const ACCEL shortcut = Shortcuts(key).at(0);
        Strike(shortcut.key, (shortcut.fVirt & FCONTROL) != 0 ? VK_CONTROL : kNoKey);
    }

    WindowsClock clock;
    WindowsWindowSystem windows{clock};
};

}  // namespace tamrin::test
