#pragma once

#include <iostream>

#include "platform/headless/console_dialogs.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/text_codec.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

// What the suites of tests/system run on. Windows has a header of the same name.
using SystemFiles = PosixFiles;
using SystemProcesses = PosixProcesses;
using SystemTextCodec = PosixTextCodec;

// The forms in memory and their user.
class Desk {
public:
    Desk() {
        clock.AddSource([this] { windows.RunTimers(clock.TickCount()); });
    }

    // Shows a form and brings it to the front.
    void Show(Form& form) { form.SetVisible(true); }

    // Clicks a control or chooses a menu entry.
    void Click(Form& form, std::string_view name, int index = -1) {
        static_cast<HeadlessForm&>(form).Click(name, index);
    }

    // Presses a shortcut key: "F5", "Ctrl+S".
    void Press(Form& form, std::string_view key) { static_cast<HeadlessForm&>(form).Press(key); }

    VirtualClock clock;
    ConsoleDialogs dialogs{std::cerr};
    HeadlessWindowSystem windows{dialogs};
};

}  // namespace tamrin::test
