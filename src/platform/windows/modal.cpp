#include <algorithm>

#include "platform/windows/layout.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// A form that holds up the others is no window to be minimised or to stand by itself.
void MakeDialog(HWND window) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    constexpr LONG_PTR kBoxes = WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    SetWindowLongPtrW(window, GWL_STYLE, (style & ~kBoxes) | static_cast<LONG_PTR>(WS_POPUP));
    const LONG_PTR extended = GetWindowLongPtrW(window, GWL_EXSTYLE);
    SetWindowLongPtrW(window, GWL_EXSTYLE, extended | WS_EX_DLGMODALFRAME);
}

}  // namespace

void WindowForm::ShowModal(Form& owner) {
    owner_ = &static_cast<WindowForm&>(owner);
    owner_->in_front_ = this;
    closed_ = false;
    shown_before_ = false;
    MakeDialog(window_);
    SetPlace(Centered(GetPlace(), owner_->GetPlace()));
    // An owned window is never behind its owner, and is hidden with it: that must not happen to one
    // whose owner is not seen.
    const HWND behind = owner_->Visible() ? owner_->window_ : nullptr;
    SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(behind));
    for (WindowForm* form : forms_) {
        if (form == this || !IsWindowEnabled(form->window_)) continue;
        EnableWindow(form->window_, FALSE);
        disabled_.push_back(form);
    }
    SetVisible(true);
    while (Visible()) clock_.WaitForEvents();
}

// Gives the input back to the other forms. This comes before the form is hidden, for otherwise
// Windows would find none of ours to give the keyboard to, and take another program's.
void WindowForm::LeaveModal() {
    if (!owner_) return;
    owner_->in_front_ = nullptr;
    for (const WindowForm* form : disabled_) {
        if (std::ranges::count(forms_, form) > 0) EnableWindow(form->window_, TRUE);
    }
    disabled_.clear();
    if (GetActiveWindow() == window_ && owner_->Visible()) SetActiveWindow(owner_->window_);
    owner_ = nullptr;
}

}  // namespace tamrin
