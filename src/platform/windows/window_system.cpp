#include "platform/windows/window_system.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include "platform/windows/clipboard.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kTwipsPerInch = 1440;

int SystemDpi(int axis) {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, axis);
    ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : kTableDpi;
}

}  // namespace

WindowsWindowSystem::WindowsWindowSystem(WindowsClock& clock)
    : clock_(clock), dialogs_([this] { return Front(); }) {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&controls);
}

std::unique_ptr<Form> WindowsWindowSystem::Create(const FormSpec& spec) {
    return std::make_unique<WindowForm>(spec, forms_, clock_);
}

HWND WindowsWindowSystem::Front() const {
    const HWND active = GetActiveWindow();
    if (active && WindowForm::Of(active) && IsWindowVisible(active)) return active;
    for (auto form = forms_.rbegin(); form != forms_.rend(); ++form) {
        if ((*form)->Visible()) return (*form)->window();
    }
    return nullptr;
}

Place WindowsWindowSystem::Screen() const {
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

int WindowsWindowSystem::TwipsPerPixelY() const { return kTwipsPerInch / SystemDpi(LOGPIXELSY); }

std::string WindowsWindowSystem::ClipboardText() const { return ReadClipboard(Front()); }

bool WindowsWindowSystem::SetClipboardText(const std::string& text) {
    // The clipboard takes a text only from an owner.
    const HWND owner = Front();
    return WriteClipboard(owner ? owner : GetDesktopWindow(), text);
}

bool WindowsWindowSystem::CtrlHeld() const { return GetAsyncKeyState(VK_CONTROL) < 0; }

bool WindowsWindowSystem::ShellOpen(const std::string& path) {
    const std::wstring file = Wide(path);
    SHELLEXECUTEINFOW request{};
    request.cbSize = sizeof request;
    request.fMask = SEE_MASK_FLAG_NO_UI;
    request.lpFile = file.c_str();
    request.nShow = SW_SHOWNORMAL;
    return ShellExecuteExW(&request) != 0;
}

}  // namespace tamrin
