#pragma once

#include <windows.h>

#include <mshtml.h>
#include <ole2.h>
#include <oleacc.h>

#include <chrono>
#include <functional>
#include <future>
#include <optional>

#include "platform/explorer/call_filter.h"
#include "platform/explorer/com_ptr.h"

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

    // What the content window answers to those who ask for its document; null answers 0.
    void Show(IDispatch* document) { SetPropW(content, kDocument, document); }
    // Runs something in the window's thread and returns when it is done.
    void Do(const std::function<void()>& act) {
        SendMessageW(content, WM_APP, 0, reinterpret_cast<LPARAM>(&act));
    }

    HWND frame;
    HWND content;

private:
    static constexpr const wchar_t* kDocument = L"TamrinDocument";

    static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
        if (message == WM_APP) {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): what Do sent
            (*reinterpret_cast<const std::function<void()>*>(lparam))();
            return 0;
        }
        if (message != asked) return DefWindowProcW(window, message, wparam, lparam);
        auto* const document = static_cast<IDispatch*>(GetPropW(window, kDocument));
        return document ? LresultFromObject(IID_IHTMLDocument, wparam, document) : 0;
    }
};

// A thread with an apartment and a window of its own, which holds objects as the browser's process
// does: calls to them are marshaled, and wait while it does not handle its messages.
class OtherProgram {
public:
    OtherProgram() {
        std::promise<void> made;
        thread_ = std::async(std::launch::async, [this, &made] {
            const Apartment apartment;
            window.emplace();
            made.set_value();
            MSG message;
            while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
            window.reset();
        });
        made.get_future().wait();
    }
    // Ends it; waits until it has handled what it was asked.
    ~OtherProgram() {
        window->Do([] { PostQuitMessage(0); });
        // When its windows go, those of this thread may get messages.
        Pump([this] {
            return thread_.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        });
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    // The object that `make` makes there, as this thread calls it.
    ComPtr<IDispatch> Give(const std::function<ComPtr<IDispatch>()>& make) {
        IStream* packed = nullptr;
        window->Do(
            [&] { CoMarshalInterThreadInterfaceInStream(IID_IDispatch, make().get(), &packed); });
        ComPtr<IDispatch> given;
        CoGetInterfaceAndReleaseStream(packed, IID_IDispatch,
                                       reinterpret_cast<void**>(given.Out()));
        return given;
    }

    std::optional<BrowserWindowDouble> window;

private:
    std::future<void> thread_;
};

}  // namespace tamrin::test
