#include "platform/windows/tray_icon.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "platform/windows/wide.h"

namespace tamrin {

void TrayIcon::Show(HWND window, bool shown, std::string_view tip) {
    if (shown == shown_) return;
    shown_ = shown;
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = window;
    data.uID = 1;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = kTrayMessage;
    data.hIcon = ProgramIcon(SM_CXSMICON);
    const std::wstring text = Wide(tip);
    std::copy_n(text.begin(), std::min(text.size(), std::size(data.szTip) - 1), data.szTip);
    Shell_NotifyIconW(shown ? NIM_ADD : NIM_DELETE, &data);
}

void TrayIcon::Restore(HWND window, std::string_view tip) {
    if (!shown_) return;
    shown_ = false;
    Show(window, true, tip);
}

bool TrayIcon::IsClick(LPARAM parameter) {
    return parameter == WM_LBUTTONUP || parameter == WM_RBUTTONUP ||
           parameter == static_cast<LPARAM>(NIN_SELECT);
}

}  // namespace tamrin
