#pragma once

#include <windows.h>

#include <string_view>

namespace tamrin {

// The resource number of the program's icon: the lowest one, which Windows shows for the file.
inline constexpr int kProgramIcon = 1;

// The program's icon in the size of a system metric (SM_CXICON, SM_CXSMICON). Windows owns it. Null
// for a program without one, such as a test.
inline HICON ProgramIcon(int metric) {
    const int size = GetSystemMetrics(metric);
    return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kProgramIcon),
                                         IMAGE_ICON, size, size, LR_SHARED));
}

// The program's icon in the notification area. Its window is notified of clicks by kTrayMessage.
class TrayIcon {
public:
    static constexpr UINT kTrayMessage = WM_APP + 1;

    // Shows or removes the icon of a window; `tip` is its tool tip.
    void Show(HWND window, bool shown, std::string_view tip);

    // Adds a shown icon again after the taskbar was started again.
    void Restore(HWND window, std::string_view tip);

    // Whether a kTrayMessage with this parameter is a click that brings the window back.
    static bool IsClick(LPARAM parameter);

private:
    bool shown_ = false;
};

}  // namespace tamrin
