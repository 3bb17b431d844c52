#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace tamrin {

// The clipboard's text, "" when it holds none.
std::string ReadClipboard(HWND owner);

// Replaces what is on the clipboard by a text. False when another program keeps the clipboard open.
bool WriteClipboard(HWND owner, std::string_view text);

}  // namespace tamrin
