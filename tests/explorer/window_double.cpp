#include "explorer/window_double.h"

#include <mshtml.h>
#include <ole2.h>
#include <oleacc.h>

#include <future>

namespace tamrin::test {
namespace {

constexpr const wchar_t* kDocument = L"TamrinDocument";
constexpr const wchar_t* kHang = L"TamrinHang";
constexpr UINT kDo = WM_APP;

LRESULT CALLBACK AnswerContent(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
    if (message != asked) return DefWindowProcW(window, message, wparam, lparam);
    if (const HANDLE hang = GetPropW(window, kHang)) WaitForSingleObject(hang, INFINITE);
    auto* const document = static_cast<IDispatch*>(GetPropW(window, kDocument));
    return document ? LresultFromObject(IID_IHTMLDocument, wparam, document) : 0;
}

LRESULT CALLBACK AnswerDoor(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != kDo) return DefWindowProcW(window, message, wparam, lparam);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what Do sent
    (*reinterpret_cast<const std::function<void()>*>(lparam))();
    return 0;
}

HWND WithProcedure(HWND window, WNDPROC procedure) {
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return window;
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

bool Pump(const std::function<bool()>& over) {
    const DWORD start = GetTickCount();
    while (!over()) {
        if (GetTickCount() - start > 10000) return false;
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return true;
}

BrowserWindowDouble::BrowserWindowDouble(const wchar_t* frame_class)
    : frame(
          MakeWindow(frame_class, nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE, {100, 50, 700, 550})) {
    RECT client{};
    GetClientRect(frame, &client);
    content =
        WithProcedure(MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD | WS_VISIBLE, client),
                      AnswerContent);
}

void BrowserWindowDouble::Show(IDispatch* document) { SetPropW(content, kDocument, document); }

void BrowserWindowDouble::HangUntil(HANDLE event) { SetPropW(content, kHang, event); }

OtherProgram::OtherProgram() {
    std::promise<HWND> made;
    auto door = made.get_future();
    thread_ = std::thread([this, &made] {
        OleInitialize(nullptr);
        made.set_value(
            WithProcedure(MakeWindow(L"TamrinTestDoor", HWND_MESSAGE, 0, {}), AnswerDoor));
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
        OleUninitialize();
        over_ = true;
    });
    door_ = door.get();
}

OtherProgram::~OtherProgram() {
    Do([] { PostQuitMessage(0); });
    // When its windows go, those of this thread may get messages.
    Pump([this] { return over_.load(); });
    thread_.join();
}

void OtherProgram::Do(const std::function<void()>& act) {
    SendMessageW(door_, kDo, 0, reinterpret_cast<LPARAM>(&act));
}

ComPtr<IDispatch> OtherProgram::Give(const std::function<ComPtr<IDispatch>()>& make) {
    ComPtr<IStream> packed;
    Do([&] {
        const ComPtr<IDispatch> object = make();
        CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object.get(), packed.Out());
    });
    ComPtr<IDispatch> given;
    packed->AddRef();  // the call takes it
    CoGetInterfaceAndReleaseStream(packed.get(), IID_IDispatch,
                                   reinterpret_cast<void**>(given.Out()));
    return given;
}

}  // namespace tamrin::test
