#include "explorer/window_double.h"

#include <mshtml.h>
#include <oleacc.h>

#include <cstdint>

namespace tamrin::test {
namespace {

constexpr const wchar_t* kDocument = L"TamrinDocument";
constexpr const wchar_t* kHang = L"TamrinHang";

LRESULT CALLBACK AnswerContent(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
    if (message != asked) return DefWindowProcW(window, message, wparam, lparam);
    Sleep(static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(GetPropW(window, kHang))));
    auto* const document = static_cast<IDispatch*>(GetPropW(window, kDocument));
    return document ? LresultFromObject(IID_IHTMLDocument, wparam, document) : 0;
}

}  // namespace

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
    SetWindowLongPtrW(content, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnswerContent));
}

void BrowserWindowDouble::Show(IDispatch* document) { SetPropW(content, kDocument, document); }

void BrowserWindowDouble::HangFor(DWORD milliseconds) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a property holds a handle
    SetPropW(content, kHang, reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(milliseconds)));
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
