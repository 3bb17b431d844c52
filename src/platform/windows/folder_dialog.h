#pragma once

#include <windows.h>

#include <string>

namespace tamrin {

// Lets the user choose a folder, beginning with `start`. Answers its full path without a final
// separator, "" when the dialog was dismissed or cannot be shown.
std::string ChooseFolder(HWND owner, const std::string& title, const std::string& start);

}  // namespace tamrin
