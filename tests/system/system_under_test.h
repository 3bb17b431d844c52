#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/text.h"
#include "platform/window_system.h"

namespace tamrin::test {

// What the suites of this folder are run on: each system that has them defines these.
std::unique_ptr<TextCodec> MakeTextCodec();
std::unique_ptr<Files> MakeFiles();
std::unique_ptr<Processes> MakeProcesses();

// A window system with its user.
class Desk {
public:
    virtual ~Desk() = default;

    virtual WindowSystem& windows() = 0;
    virtual Clock& clock() = 0;

    // Shows a form and brings it to the front.
    virtual void Show(Form& form) = 0;

    // Lets time pass, with events handled.
    virtual void Pass(int milliseconds) = 0;

    // Clicks a control, or chooses an entry of a menu.
    virtual void Click(Form& form, std::string_view name, int index = -1) = 0;

    // Presses a shortcut key: "F5", "Ctrl+S".
    virtual void Press(Form& form, std::string_view key) = 0;

    // Does `act` once as soon as the form is shown as a modal one.
    virtual void WhenModal(Form& form, std::function<void()> act) = 0;
};

std::unique_ptr<Desk> MakeDesk();

}  // namespace tamrin::test
