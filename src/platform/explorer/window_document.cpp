#include "platform/explorer/window_document.h"

#include <mshtml.h>
#include <oleacc.h>

#include <cwchar>

#include "platform/explorer/content_window.h"

namespace tamrin {
namespace {

constexpr UINT kLongestMs = 2000;
constexpr const wchar_t* kFrameClasses[] = {L"Chrome_WidgetWin_1", L"IEFrame"};

bool IsOf(HWND window, const wchar_t* class_name) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return std::wcscmp(name, class_name) == 0;
}

}  // namespace

ComPtr<IDispatch> GetDocumentFromWindow(ComCalls& calls, HWND window) {
    static const UINT ask = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
    DWORD_PTR given = 0;
    const LRESULT answered =
        SendMessageTimeoutW(window, ask, 0, 0, SMTO_ABORTIFHUNG, kLongestMs, &given);
    const bool has = answered != 0 && given != 0;
    if (!calls.Note(has ? S_OK : E_FAIL, "send", "window", "WM_HTML_GETOBJECT")) return nullptr;
    ComPtr<IHTMLDocument> document;
    const HRESULT made = ObjectFromLresult(static_cast<LRESULT>(given), IID_IHTMLDocument, 0,
                                           reinterpret_cast<void**>(document.Out()));
    calls.Note(made, "call", "window", "ObjectFromLresult");
    return document.As<IDispatch>();
}

std::vector<ContentWindow> ContentWindows(const std::vector<HWND>& screen) {
    std::vector<ContentWindow> found;
    for (const wchar_t* frame_class : kFrameClasses) {
        for (const HWND frame : screen) {
            if (!IsOf(frame, frame_class)) continue;
            if (const HWND content = FindIeServerWindow(frame)) found.push_back({frame, content});
        }
    }
    return found;
}

}  // namespace tamrin
