#include "explorer/window_double.h"

namespace tamrin::test {

HWND MakeWindow(const wchar_t* class_name, HWND above, DWORD style, const RECT& place) {
    WNDCLASSW made{};
    made.lpfnWndProc = DefWindowProcW;
    made.lpszClassName = class_name;
    RegisterClassW(&made);  // fails where it is known already
    return CreateWindowExW(0, class_name, L"", style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, above, nullptr,
                           nullptr, nullptr);
}

BrowserWindowDouble::BrowserWindowDouble(const wchar_t* frame_class)
    : frame(
          MakeWindow(frame_class, nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE, {100, 50, 700, 550})) {
    RECT client{};
    GetClientRect(frame, &client);
    content = MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD | WS_VISIBLE, client);
}

bool BrowserWindowDouble::ShowBox() {
    const HWND box = CreateWindowExW(0, L"#32770", L"Web", WS_POPUP | WS_CAPTION | WS_VISIBLE, 200,
                                     200, 200, 100, frame, nullptr, nullptr, nullptr);
    EnableWindow(frame, FALSE);
    bool answer = false;
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const bool key = message.message == WM_KEYDOWN && message.hwnd == box;
        if (key && (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE)) {
            answer = message.wParam == VK_RETURN;
            break;
        }
        DispatchMessageW(&message);
    }
    EnableWindow(frame, TRUE);
    DestroyWindow(box);
    return answer;
}

}  // namespace tamrin::test
