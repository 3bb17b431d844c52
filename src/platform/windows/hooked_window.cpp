#include "platform/windows/hooked_window.h"

namespace tamrin {

HookedWindow::HookedWindow(HWND window) : window_(window) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    own_ = reinterpret_cast<WNDPROC>(  // NOLINT(performance-no-int-to-ptr)
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure)));
}

HookedWindow::~HookedWindow() {
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own_));
}

LRESULT CALLBACK HookedWindow::Procedure(HWND window, UINT message, WPARAM wide, LPARAM wider) {
    auto* const hook = reinterpret_cast<HookedWindow*>(  // NOLINT(performance-no-int-to-ptr)
        GetWindowLongPtrW(window, GWLP_USERDATA));
    return hook->Handle(message, wide, wider);
}

}  // namespace tamrin
