#include <windows.h>

#include <shellapi.h>

#include "platform/windows/shortcut.h"
#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// A handle or pointer that came as the number of a message.
template <typename Pointer>
Pointer As(LONG_PTR number) {
    return reinterpret_cast<Pointer>(number);  // NOLINT(performance-no-int-to-ptr)
}

// Sent to all windows when the taskbar has been started anew.
UINT TaskbarCreated() {
    static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
    return message;
}

}  // namespace

WindowForm* WindowForm::Of(HWND window) {
    const auto procedure = As<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    if (procedure != Procedure) return nullptr;
    return As<WindowForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT CALLBACK WindowForm::Procedure(HWND window, UINT message, WPARAM wide, LPARAM wider) {
    if (message == WM_NCCREATE) {
        auto* const form = static_cast<WindowForm*>(As<CREATESTRUCTW*>(wider)->lpCreateParams);
        form->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(form));
    }
    auto* const form = As<WindowForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!form) return DefWindowProcW(window, message, wide, wider);
    return form->Handle(message, wide, wider);
}

LRESULT WindowForm::Handle(UINT message, WPARAM wide, LPARAM wider) {
    switch (message) {
        case WM_COMMAND:
            return Command(wide, wider);
        case WM_TIMER:
            for (std::size_t i = 0; i < timers_.size(); ++i) {
                if (timers_[i]->id() == wide) timers_[i]->Tick();
            }
            return 0;
        case WM_SIZE:
            if (wide != SIZE_MINIMIZED) Arrange();
            return 0;
        case WM_GETMINMAXINFO:
            LimitSize(*As<MINMAXINFO*>(wider));
            return 0;
        case WM_CLOSE:
            Dismiss();
            return 0;
        case WM_QUERYENDSESSION:
            return !onQueryUnload || onQueryUnload() ? TRUE : FALSE;
        case WM_CONTEXTMENU:
            ContextMenu(As<HWND>(static_cast<LONG_PTR>(wide)), wider);
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wide) == WA_INACTIVE && ControlOf(GetFocus())) focus_ = GetFocus();
            break;
        case WM_SETFOCUS:
            TakeFocus();
            return 0;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
            if (const HBRUSH brush =
                    TextColors(As<HDC>(static_cast<LONG_PTR>(wide)), As<HWND>(wider))) {
                return reinterpret_cast<LRESULT>(brush);
            }
            break;
        case WM_DROPFILES:
            DropFiles(wide);
            return 0;
        case WM_DPICHANGED:
            DpiChanged(LOWORD(wide), *As<const RECT*>(wider));
            return 0;
        case DM_GETDEFID:
            return MAKELRESULT(DefaultButton(), DC_HASDEFID);
        case TrayIcon::kTrayMessage:
            if (TrayIcon::IsClick(wider)) TrayClicked();
            return 0;
        default:
            if (message == TaskbarCreated()) tray_icon_.Restore(window_, Caption());
    }
    return DefWindowProcW(window_, message, wide, wider);
}

LRESULT WindowForm::Command(WPARAM wide, LPARAM wider) {
    const UINT id = LOWORD(wide);
    if (wider != 0) {
        WindowControl* const control = ControlOf(As<HWND>(wider));
        if (control && control->Enabled()) control->Notified(HIWORD(wide));
    } else if (id == IDCANCEL) {
        // Esc. It never closes a form that has no such button.
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

// The button that Enter presses: the one that has the keyboard, else the form's.
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

void WindowForm::LimitSize(MINMAXINFO& limits) const {
    if ((flags_ & kResizable) == 0) return;
    const SIZE least = OuterSize(Scaled(width_, dpi_), Scaled(height_, dpi_));
    limits.ptMinTrackSize = {least.cx, least.cy};
}

// The keyboard goes back to where it was, at first to the first control that takes it.
void WindowForm::TakeFocus() const {
    const WindowControl* const before = ControlOf(focus_);
    const bool fit = before && before->Enabled() && before->Visible();
    const HWND first = GetNextDlgTabItem(window_, nullptr, FALSE);
    if (fit || first) ::SetFocus(fit ? focus_ : first);
}

// The colours of a text box, which looks the same whether it can be typed into or not; null for
// what keeps its own.
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

// The window has come to a monitor of another resolution.
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
