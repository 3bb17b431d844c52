#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace tamrin {

// The clipboard's text, "" when it holds none.
std::string ReadClipboard(HWND owner);

// Puts a text on the clipboard in place of what is there. False when another program keeps it to
// itself.
bool WriteClipboard(HWND owner, std::string_view text);

}  // namespace tamrin
