#pragma once

#include <windows.h>

#include <string_view>

namespace tamrin {

// The tool tips of one form. Their window belongs to the form's and goes with it.
//
// They learn of the mouse from the message loop. The control that shows tips can hook the controls
// itself, but then every line that is added to a long list pays for it.
class ToolTips {
public:
    explicit ToolTips(HWND form);

    // Sets the tip of a control; an empty text takes it away.
    void Set(HWND control, std::string_view text) const;

    // To be told of every message for a window of the form before that handles it.
    void Relay(const MSG& message) const;

private:
    HWND form_;
    HWND window_;
};

}  // namespace tamrin
