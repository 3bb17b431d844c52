#pragma once

#include <windows.h>

#include <string_view>

namespace tamrin {

// The tool tips of one form. Their window is owned by the form's and is destroyed with it.
//
// The message loop relays the mouse to them. The tool tip control could subclass the controls
// itself (TTF_SUBCLASS), but that slows down every line that is added to a long list.
class ToolTips {
public:
    explicit ToolTips(HWND form);

    // Sets the tip of a control; an empty text removes it.
    void Set(HWND control, std::string_view text) const;

    // Call this with every message for a window of the form before dispatching it.
    void Relay(const MSG& message) const;

private:
    HWND form_;
    HWND window_;
};

}  // namespace tamrin
