#pragma once

#include <windows.h>

#include <mshtml.h>
#include <oleacc.h>

#include <functional>

namespace tamrin::test {

// Makes a visible window of a class of this name, in this thread; the class answers nothing of its
// own. One with WS_CHILD is a part of `above`, any other is owned by it.
inline HWND MakeWindow(const wchar_t* name, HWND above, DWORD style, const RECT& at = {}) {
    WNDCLASSW made{};
    made.lpfnWndProc = DefWindowProcW;
    made.lpszClassName = name;
    RegisterClassW(&made);  // fails where it is known already
    return CreateWindowExW(0, name, L"", style | WS_VISIBLE, at.left, at.top, at.right - at.left,
                           at.bottom - at.top, above, nullptr, nullptr, nullptr);
}

// Handles messages until `over` holds; calls from other threads are served meanwhile. False when
// that takes too long.
inline bool Pump(const std::function<bool()>& over) {
    const DWORD start = GetTickCount();
    while (!over() && GetTickCount() - start < 10000) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return over();
}

// The frame of a browser with the window of its page inside.
class BrowserWindowDouble {
public:
    explicit BrowserWindowDouble(const wchar_t* frame_class = L"IEFrame")
        : frame(MakeWindow(frame_class, nullptr, WS_OVERLAPPEDWINDOW, {100, 50, 700, 550})) {
        RECT client{};
        GetClientRect(frame, &client);
        content = MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD, client);
        SetWindowLongPtrW(content, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer));
    }
    ~BrowserWindowDouble() { DestroyWindow(frame); }
    BrowserWindowDouble(const BrowserWindowDouble&) = delete;
    BrowserWindowDouble& operator=(const BrowserWindowDouble&) = delete;

    // What the content window answers to those who ask for its document.
    void Show(IDispatch* document) { SetPropW(content, L"TamrinDocument", document); }

    HWND frame;
    HWND content;

private:
    static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
        auto* const document = static_cast<IDispatch*>(GetPropW(window, L"TamrinDocument"));
        if (message == asked && document)
            return LresultFromObject(IID_IHTMLDocument, wparam, document);
        return DefWindowProcW(window, message, wparam, lparam);
    }
};

}  // namespace tamrin::test
