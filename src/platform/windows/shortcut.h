#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

namespace tamrin {

// Appends the keys of a menu's shortcut, parted by ", ", such as "Shift+F5, Esc", for `command`.
// What names no key is left out.
void AppendShortcuts(std::vector<ACCEL>& shortcuts, std::string_view text, WORD command);

// Whether text is edited with this key, so that it belongs to a text box that has the focus: Del,
// and Ctrl with A, C, V, X, Y or Z.
bool EditsText(const MSG& message);

}  // namespace tamrin
