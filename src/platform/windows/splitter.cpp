#include "platform/windows/splitter.h"

#include <windows.h>

#include <windowsx.h>

#include <algorithm>

#include "platform/windows/window_form.h"

namespace tamrin {

void WindowSplitter::DragTo(int y) {
    Place place = GetPlace();
    const int top = std::clamp(place.top + MulDiv(y - grip_, kTableDpi, form().dpi()), 0,
                               MulDiv(form().ClientSize().cy, kTableDpi, form().dpi()));
    if (top == place.top) return;
    place.top = top;
    SetPlace(place);
    Raise(onChange);
}

LRESULT WindowSplitter::Handle(UINT message, WPARAM wide, LPARAM wider) {
    switch (message) {
        case WM_NCHITTEST:
            return HTCLIENT;  // a static control would let the mouse through
        case WM_SETCURSOR:
            SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
            return TRUE;
        case WM_LBUTTONDOWN:
            grip_ = GET_Y_LPARAM(wider);
            SetCapture(window());
            return 0;
        case WM_MOUSEMOVE:
            if (GetCapture() == window()) DragTo(GET_Y_LPARAM(wider));
            return 0;
        case WM_LBUTTONUP:
            ReleaseCapture();
            return 0;
        default:
            return Default(message, wide, wider);
    }
}

}  // namespace tamrin
