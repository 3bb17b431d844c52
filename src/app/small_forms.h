#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/window_system.h"

namespace tamrin {

// The forms that show one thing or ask for one.

// Show a form in the middle of the main window, in front of everything, for about a second. The
// form takes no input; it closes itself, or earlier when its owner lets it go.
std::unique_ptr<Form> ShowSplash(WindowSystem& windows, const std::string& version,
                                 const Form& main);
std::unique_ptr<Form> ShowNotice(WindowSystem& windows, const std::string& text, const Form& main);

// Shows the about box until the user closes it. It can start the system information tool.
void ShowAbout(WindowSystem& windows, const std::string& version, Form& owner);

// Asks how many times a scenario is played: 1 to 99999, or nothing when the user cancels. `count`
// is the number proposed.
std::optional<int> AskPlayCount(WindowSystem& windows, int count, Form& owner);

// The program's own licence and those of the works that it includes. The build makes it from
// LICENSE and licenses/THIRD-PARTY.txt. Lines end in LF.
std::string_view LicenseText();

}  // namespace tamrin
