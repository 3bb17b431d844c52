#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <vector>

#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// A handle or pointer that is a parameter of a message.
template <typename Pointer>
Pointer As(LONG_PTR number) {
    return reinterpret_cast<Pointer>(number);  // NOLINT(performance-no-int-to-ptr)
}

// Sent to all windows when the taskbar was started again.
UINT TaskbarCreated() {
    static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
    return message;
}

// Whether the key edits text, so that it belongs to a text box that has the focus: Del, and Ctrl
// with A, C, V, X, Y or Z.
bool EditsText(const MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_DELETE) return true;
    constexpr std::string_view kLetters = "ACVXYZ";
    return GetKeyState(VK_CONTROL) < 0 && message.wParam < 0x80 &&
           kLetters.find(static_cast<char>(message.wParam)) != std::string_view::npos;
}

// Whether exactly the shortcut's modifiers are held down now.
bool ModifiersHeld(const ACCEL& shortcut) {
    const auto matches = [&](BYTE flag, int key) {
        return ((shortcut.fVirt & flag) != 0) == (GetAsyncKeyState(key) < 0);
    };
    return matches(FSHIFT, VK_SHIFT) && matches(FCONTROL, VK_CONTROL) && matches(FALT, VK_MENU);
}

}  // namespace

WindowForm* WindowForm::Of(HWND window) {
    const auto procedure = As<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    if (procedure != Procedure) return nullptr;
    return As<WindowForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT CALLBACK WindowForm::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        auto* const form = static_cast<WindowForm*>(As<CREATESTRUCTW*>(lparam)->lpCreateParams);
        form->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(form));
    }
    auto* const form = As<WindowForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!form) return DefWindowProcW(window, message, wparam, lparam);
    return form->Handle(message, wparam, lparam);
}

LRESULT WindowForm::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_COMMAND:
            return Command(wparam, lparam);
        case WM_TIMER:
            for (std::size_t i = 0; i < timers_.size(); ++i) {
                if (timers_[i]->id() == wparam) timers_[i]->Tick();
            }
            return 0;
        case WM_SIZE:
            if (wparam != SIZE_MINIMIZED) Arrange();
            return 0;
        case WM_GETMINMAXINFO:
            if (const SIZE least = MinimumSize(); least.cx > 0) {
                As<MINMAXINFO*>(lparam)->ptMinTrackSize = {least.cx, least.cy};
            }
            return 0;
        case WM_CLOSE:
            Dismiss();
            return 0;
        case WM_QUERYENDSESSION:
            return !onQueryUnload || onQueryUnload() ? TRUE : FALSE;
        case WM_CONTEXTMENU:
            ContextMenu(As<HWND>(static_cast<LONG_PTR>(wparam)), lparam);
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wparam) == WA_INACTIVE && ControlOf(GetFocus())) focus_ = GetFocus();
            break;
        case WM_SETFOCUS:
            TakeFocus();
            return 0;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
            if (const HBRUSH brush =
                    TextColors(As<HDC>(static_cast<LONG_PTR>(wparam)), As<HWND>(lparam))) {
                return reinterpret_cast<LRESULT>(brush);
            }
            break;
        case WM_DROPFILES:
            DropFiles(wparam);
            return 0;
        case WM_DISPLAYCHANGE:
            SetPlace(GetPlace());  // its monitor may be gone
            return 0;
        case WM_DPICHANGED:
            DpiChanged(LOWORD(wparam), *As<const RECT*>(lparam));
            return 0;
        case DM_GETDEFID:
            return MAKELRESULT(DefaultButton(), DC_HASDEFID);
        case TrayIcon::kTrayMessage:
            if (TrayIcon::IsClick(lparam)) TrayClicked();
            return 0;
        default:
            if (message == TaskbarCreated()) tray_icon_.Restore(window_, Caption());
    }
    return DefWindowProcW(window_, message, wparam, lparam);
}

LRESULT WindowForm::Command(WPARAM wparam, LPARAM lparam) {
    const UINT id = LOWORD(wparam);
    if (lparam != 0) {
        WindowControl* const control = ControlOf(As<HWND>(lparam));
        if (control && control->Enabled()) control->Notified(HIWORD(wparam));
    } else if (id == IDCANCEL) {
        // Esc. A form without such a button stays open.
        if (WindowControl* const cancel = ButtonWith(kCancel)) cancel->Press();
    } else {
        menu_.Choose(id);
    }
    return 0;
}

bool WindowForm::TakesShortcut(MSG& message) const {
    if (!menu_.accelerators() ||
        (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)) {
        return false;
    }
    if (EditsText(message)) {
        const WindowControl* const control = ControlOf(message.hwnd);
        const ControlKind kind = control ? control->spec().kind : ControlKind::kButton;
        if (kind == ControlKind::kTextBox || kind == ControlKind::kComboBox) return false;
    }
    return TranslateAcceleratorW(window_, menu_.accelerators(), &message) != 0;
}

bool WindowForm::WillPress(const MSG& message, const Pressable& control) {
    WindowForm* const form = Of(GetAncestor(message.hwnd, GA_ROOT));
    if (!form || form->name_ != control.form) return false;
    if (message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONUP) {
        const auto* button = dynamic_cast<const WindowControl*>(&form->Find(control.button));
        return button && button->window() == message.hwnd;
    }
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
    const MenuEntry* const entry = form->menu_.Find(control.entry);
    return entry && std::ranges::any_of(Shortcuts(entry->spec().shortcut), [&](const ACCEL& key) {
               return key.key == message.wParam && ModifiersHeld(key);
           });
}

void WindowForm::ContextMenu(HWND window, LPARAM point) {
    WindowControl* const control = ControlOf(window);
    if (!control) return;
    key_menu_ = point == -1;
    Raise(control->onContext);
    key_menu_ = false;
}

WindowControl* WindowForm::ButtonWith(unsigned flag) const {
    for (const auto& control : controls_) {
        if ((control->spec().flags & flag) != 0 && control->Enabled()) return control.get();
    }
    return nullptr;
}

// The button that Enter presses: the one with the focus, otherwise the form's default button.
int WindowForm::DefaultButton() const {
    const WindowControl* button = ControlOf(GetFocus());
    if (!button || button->spec().kind != ControlKind::kButton) button = ButtonWith(kDefault);
    return button ? GetDlgCtrlID(button->window()) : 0;
}

void WindowForm::Dismiss() {
    if (WindowControl* const cancel = ButtonWith(kCancel)) {
        cancel->Press();
    } else {
        Close();
    }
}

// Gives the focus back to the control that had it; at first to the first one that can have it.
void WindowForm::TakeFocus() const {
    const WindowControl* const before = ControlOf(focus_);
    const bool usable = before && before->Enabled() && before->Visible();
    const HWND first = GetNextDlgTabItem(window_, nullptr, FALSE);
    if (usable || first) ::SetFocus(usable ? focus_ : first);
}

// The colours of an enabled text box, read-only or not; null for any other control, which keeps its
// own.
HBRUSH WindowForm::TextColors(HDC context, HWND window) const {
    const WindowControl* const control = ControlOf(window);
    if (!control || control->spec().kind != ControlKind::kTextBox || !control->Enabled()) {
        return nullptr;
    }
    const bool red = control->text_color() == TextColor::kRed;
    ::SetTextColor(context, red ? RGB(255, 0, 0) : GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(COLOR_WINDOW));
    return GetSysColorBrush(COLOR_WINDOW);
}

void WindowForm::DropFiles(WPARAM drop) const {
    const auto files = As<HDROP>(static_cast<LONG_PTR>(drop));
    std::vector<std::string> paths;
    for (UINT i = 0; i < DragQueryFileW(files, 0xFFFFFFFF, nullptr, 0); ++i) {
        std::wstring path(DragQueryFileW(files, i, nullptr, 0) + 1, L'\0');
        path.resize(DragQueryFileW(files, i, path.data(), static_cast<UINT>(path.size())));
        paths.push_back(Utf8(path));
    }
    DragFinish(files);
    if (const auto handler = onDropFiles) handler(paths);
}

// The window has moved to a monitor with another scale.
void WindowForm::DpiChanged(int dpi, const RECT& proposed) {
    for (const auto& control : controls_) {
        const Anchor& anchor = control->anchor();
        control->SetAnchor(
            {Rescaled(anchor.place, dpi_, dpi),
             {MulDiv(anchor.client.cx, dpi, dpi_), MulDiv(anchor.client.cy, dpi, dpi_)}});
    }
    dpi_ = dpi;
    SetFonts();
    SetWindowPos(window_, nullptr, proposed.left, proposed.top, proposed.right - proposed.left,
                 proposed.bottom - proposed.top, SWP_NOZORDER | SWP_NOACTIVATE);
    Arrange();
}

void WindowForm::TrayClicked() {
    SetTrayIcon(false);
    SetVisible(true);
    if (IsIconic(window_)) ShowWindow(window_, SW_RESTORE);
    SetForegroundWindow(window_);
}

}  // namespace tamrin
