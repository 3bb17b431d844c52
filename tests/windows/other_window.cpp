#include "windows/other_window.h"

namespace tamrin::test {
namespace {

constexpr wchar_t kClass[] = L"TamrinOtherWindow";
constexpr UINT kFocus = WM_APP;  // the window to be focused
constexpr UINT kEntry = 7;
constexpr UINT kButton = 8;

// Windows carries pointers as numbers.
template <typename Pointer, typename Number>
Pointer As(Number number) {
    return reinterpret_cast<Pointer>(number);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace

OtherWindow::OtherWindow(const RECT& place)
    : shown_(CreateEventW(nullptr, FALSE, FALSE, nullptr)), thread_([this, place] { Run(place); }) {
    WaitForSingleObject(shown_, 10000);
}

OtherWindow::~OtherWindow() {
    PostMessageW(window_, WM_CLOSE, 0, 0);
    thread_.join();
    CloseHandle(shown_);
}

void OtherWindow::Run(const RECT& place) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = Procedure;
    window_class.lpszClassName = kClass;
    window_class.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    RegisterClassW(&window_class);
    const HMENU menu = CreateMenu();
    const HMENU file = CreatePopupMenu();
    AppendMenuW(file, MF_STRING, kEntry, L"E&xit");
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(file), L"&File");
    window_ = CreateWindowExW(0, kClass, L"別の窓", WS_OVERLAPPEDWINDOW, place.left, place.top,
                              place.right - place.left, place.bottom - place.top, nullptr, menu,
                              nullptr, this);
    text_ = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE, 80, 80, 200, 100,
                            window_, nullptr, nullptr, nullptr);
    button_ = CreateWindowExW(0, L"BUTTON", L"押す", WS_CHILD | WS_VISIBLE, 80, 190, 80, 26,
                              window_, As<HMENU>(UINT_PTR{kButton}), nullptr, nullptr);
    SetWindowLongPtrW(text_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    text_procedure_ = As<WNDPROC>(
        SetWindowLongPtrW(text_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TextProcedure)));
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
    SetFocus(text_);
    SetEvent(shown_);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

LRESULT CALLBACK OtherWindow::Procedure(HWND window, UINT message, WPARAM wide, LPARAM wider) {
    if (message == WM_NCCREATE) {
        const auto* const creation = As<const CREATESTRUCTW*>(wider);
        SetWindowLongPtrW(window, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = As<OtherWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self ? self->Handle(window, message, wide, wider)
                : DefWindowProcW(window, message, wide, wider);
}

LRESULT OtherWindow::Handle(HWND window, UINT message, WPARAM wide, LPARAM wider) {
    switch (message) {
        case kFocus:
            SetForegroundWindow(window);
            SetFocus(As<HWND>(wide));
            return 0;
        case WM_COMMAND:
            if (LOWORD(wide) == kEntry) ++entries;
            if (LOWORD(wide) == kButton && HIWORD(wide) == BN_CLICKED) ++presses;
            return 0;
        case WM_LBUTTONUP:
            ++clicks;
            return 0;
        case WM_RBUTTONUP:
            ++right_clicks;
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, wide, wider);
    }
}

LRESULT CALLBACK OtherWindow::TextProcedure(HWND window, UINT message, WPARAM wide, LPARAM wider) {
    auto* const self = As<OtherWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_CHAR) Sleep(static_cast<DWORD>(self->works_ms.load()));
    // The text of several lines knows this key since Windows 10.
    if (message == WM_CHAR && wide == 1) return SendMessageW(window, EM_SETSEL, 0, -1);
    return CallWindowProcW(self->text_procedure_, window, message, wide, wider);
}

void OtherWindow::SetText(const std::wstring& text) {
    SetWindowTextW(text_, text.c_str());
    SendMessageW(text_, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
    SendMessageW(window_, kFocus, reinterpret_cast<WPARAM>(text_), 0);
}

void OtherWindow::FocusButton() {
    SendMessageW(window_, kFocus, reinterpret_cast<WPARAM>(button_), 0);
}

std::wstring OtherWindow::Text() const {
    wchar_t text[1000] = L"";
    SendMessageW(text_, WM_GETTEXT, 1000, reinterpret_cast<LPARAM>(text));
    return text;
}

std::pair<int, int> OtherWindow::Selection() const {
    DWORD first = 0;
    DWORD last = 0;
    SendMessageW(text_, EM_GETSEL, reinterpret_cast<WPARAM>(&first),
                 reinterpret_cast<LPARAM>(&last));
    return {static_cast<int>(first), static_cast<int>(last)};
}

}  // namespace tamrin::test
