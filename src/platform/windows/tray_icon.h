#pragma once

#include <windows.h>

#include <string_view>

namespace tamrin {

// The program's icon in the notification area. It tells its window of clicks by kTrayMessage.
class TrayIcon {
public:
    static constexpr UINT kTrayMessage = WM_APP + 1;

    // Shows or removes the icon of a window; `tip` is what it says under the mouse pointer.
    void Show(HWND window, bool shown, std::string_view tip);

    // The taskbar was started anew and has forgotten its icons.
    void Restore(HWND window, std::string_view tip);

    // Whether a kTrayMessage with this parameter is the user's wish to see the window again.
    static bool IsClick(LPARAM parameter);

private:
    bool shown_ = false;
};

}  // namespace tamrin
