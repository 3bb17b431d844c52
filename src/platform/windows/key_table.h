#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/input.h"

namespace tamrin {

// A key of the keyboard, with the modifiers to hold.
struct VirtualKey {
    WORD code = 0;          // a virtual-key code (VK_*), 0 for none
    bool extended = false;  // a key with a twin on the number pad (KEYEVENTF_EXTENDEDKEY)
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
};

// The key of a name as strokes carry it ("ENTER", "F5"); none for any other text.
VirtualKey FindNamedKey(std::string_view name);

// The key that types a character on a keyboard; none when no key does.
VirtualKey FindCharacterKey(wchar_t character, HKL keyboard);

// What that key types while Shift is held: "A" for "a"; the text itself when no key types it.
std::wstring Shifted(const std::wstring& text, HKL keyboard);

}  // namespace tamrin
