#pragma once

#include <string>

#include "platform/input.h"

namespace tamrin {

// A key as the DevTools protocol names it (Input.dispatchKeyEvent).
struct PageKey {
    int code_number = 0;  // the virtual key code
    std::string key;      // the key's value, "Enter" or "a"
    std::string code;     // the place on the keyboard, "Enter" or "KeyA"
    std::string text;     // what it types, "" for nothing
    bool shift = false;   // whether Shift is held to type it
};

// The key of a stroke; its code number is 0 when no key types the character.
PageKey FindPageKey(const KeyStroke& stroke);

// The editing command that Ctrl and this key give in a text ("selectAll" for Ctrl+A), "" for none.
std::string EditCommand(const KeyStroke& stroke);

}  // namespace tamrin
