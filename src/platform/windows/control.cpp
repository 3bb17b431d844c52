#include "platform/windows/control.h"

#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {

void Raise(const std::function<void()>& handler) {
    if (const auto copy = handler) copy();
}

std::string WindowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return Utf8(text);
}

WindowControl::WindowControl(WindowForm& form, const ControlSpec& spec, HWND window)
    : form_(form), spec_(spec), window_(window) {}

std::string WindowControl::Text() const { return WindowText(window_); }

void WindowControl::PutText(std::string_view text) {
    muted_ = true;
    SetWindowTextW(window_, Wide(text).c_str());
    muted_ = false;
}

void WindowControl::SetText(std::string_view text) {
    if (Text() == text) return;
    PutText(text);
    if (spec_.kind == ControlKind::kTextBox || spec_.kind == ControlKind::kComboBox) {
        Raise(onChange);
    }
}

bool WindowControl::Enabled() const { return IsWindowEnabled(window_) != 0; }

void WindowControl::SetEnabled(bool enabled) {
    if (enabled == Enabled()) return;
    if (!enabled) LeaveFocus();
    EnableWindow(window_, enabled ? TRUE : FALSE);
}

bool WindowControl::Visible() const {
    // The control's own state: its form may be hidden.
    return (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
}

void WindowControl::SetVisible(bool visible) {
    if (visible == Visible()) return;
    if (!visible) LeaveFocus();
    ShowWindow(window_, visible ? SW_SHOWNA : SW_HIDE);
}

// Passes the focus on before the window can no longer have it; otherwise no window would get the
// keys.
void WindowControl::LeaveFocus() const {
    if (!Focused()) return;
    const HWND parent = form_.window();
    const HWND next = GetNextDlgTabItem(parent, window_, FALSE);
    ::SetFocus(next && next != window_ ? next : parent);
}

void WindowControl::SetChecked(bool checked) {
    if (checked_ == checked) return;
    Send(BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED);
    CheckChanged(checked);
}

void WindowControl::Uncheck() {
    checked_ = false;
    Send(BM_SETCHECK, BST_UNCHECKED);
}

void WindowControl::Press() {
    if (Enabled()) Notified(BN_CLICKED);
}

Place WindowControl::GetPlace() const {
    return Rescaled(Stretched(anchor_, spec_.stretch, form_.ClientSize()), form_.dpi(), kTableDpi);
}

void WindowControl::SetPlace(const Place& place) {
    anchor_ = {Rescaled(place, kTableDpi, form_.dpi()), form_.ClientSize()};
    const Place& pixels = anchor_.place;
    SetWindowPos(window_, nullptr, pixels.left, pixels.top, pixels.width, WindowHeight(pixels),
                 kMoveFlags);
}

bool WindowControl::Focused() const {
    const HWND focus = GetFocus();
    return focus && (focus == window_ || IsChild(window_, focus));
}

void WindowControl::SetFocus() {
    ::SetFocus(window_);
    if (spec_.kind == ControlKind::kTextBox) Send(EM_SETSEL, 0, -1);
    if (spec_.kind == ControlKind::kComboBox) Send(CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

void WindowControl::SetTip(std::string_view tip) { form_.tips().Set(window_, tip); }

void WindowControl::SetTextColor(TextColor color) {
    if (color == text_color_) return;
    text_color_ = color;
    InvalidateRect(window_, nullptr, TRUE);
}

void WindowControl::SetLeftMargin(int pixels) {
    Send(EM_SETMARGINS, EC_LEFTMARGIN, MAKELPARAM(pixels, 0));
}

void WindowControl::Notified(UINT code) {
    if (muted_) return;
    switch (spec_.kind) {
        case ControlKind::kButton:
        case ControlKind::kOptionButton:
        case ControlKind::kCheckBox:
            if (code == BN_CLICKED) Clicked();
            break;
        case ControlKind::kTextBox:
            if (code == EN_CHANGE) Raise(onChange);
            break;
        default:
            break;
    }
}

void WindowControl::Clicked() {
    if (spec_.kind == ControlKind::kButton) {
        Raise(onClick);
        return;
    }
    // Windows also notifies a click on an option that was chosen already, and the keyboard focus.
    const bool checked = Send(BM_GETCHECK) == BST_CHECKED;
    if (checked != checked_) CheckChanged(checked);
}

void WindowControl::CheckChanged(bool checked) {
    checked_ = checked;
    if (spec_.kind == ControlKind::kOptionButton) {
        if (!checked) return;
        form_.UncheckOthers(*this);
    }
    Raise(onClick);
}

HookedControl::HookedControl(WindowForm& form, const ControlSpec& spec, HWND window)
    : WindowControl(form, spec, window) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    original_ = reinterpret_cast<WNDPROC>(  // NOLINT(performance-no-int-to-ptr)
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
}

HookedControl::~HookedControl() {
    SetWindowLongPtrW(window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_));
}

LRESULT CALLBACK HookedControl::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const control = reinterpret_cast<HookedControl*>(  // NOLINT(performance-no-int-to-ptr)
        GetWindowLongPtrW(window, GWLP_USERDATA));
    return control->Handle(message, wparam, lparam);
}

}  // namespace tamrin
