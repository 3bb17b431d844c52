#pragma once

#include <windows.h>

#include <string_view>

namespace tamrin {

// What a form's user can press: a button, and the menu entry whose shortcuts do the same.
struct Pressable {
    std::string_view form;
    std::string_view button;
    std::string_view entry;
};

// Whether a message of a key or of the left mouse button, which waits in this thread's queue, will
// press it once it is handled.
bool WillPress(const MSG& message, const Pressable& what);

}  // namespace tamrin
