#include "platform/explorer/shell_list.h"

#include "platform/explorer/variant.h"
#include "platform/text.h"

namespace tamrin {

std::vector<ComPtr<IWebBrowser2>> ShellList::Browsers() {
    std::vector<ComPtr<IWebBrowser2>> browsers;
    if (!windows_) {
        const HRESULT made =
            CoCreateInstance(CLSID_ShellWindows, nullptr, CLSCTX_ALL, IID_IShellWindows,
                             reinterpret_cast<void**>(windows_.Out()));
        if (!calls_.Note(made, "make", "shell", "ShellWindows")) return browsers;
    }
    LONG count = 0;
    const HRESULT counted = windows_->get_Count(&count);
    if (!calls_.Note(counted, "get", "shell", "Count")) {
        if (IsDisconnected(counted)) windows_ = nullptr;
        return browsers;
    }
    for (LONG i = 0; i < count; ++i) {
        ComPtr<IDispatch> entry;
        const Variant index(static_cast<int>(i));
        // A window that has just been closed leaves an empty place.
        calls_.Note(windows_->Item(index.get(), entry.Out()), "call", "shell", "Item");
        auto browser = entry.As<IWebBrowser2>();
        if (browser && IsIeWindow(calls_, *browser.get())) browsers.push_back(std::move(browser));
    }
    return browsers;
}

bool IsIeWindow(ComCalls& calls, IWebBrowser2& entry) {
    BSTR text = nullptr;
    const bool known = calls.Note(entry.get_Name(&text), "get", "entry", "Name");
    const std::string name = known ? TextOf(text, SysStringLen(text)) : std::string();
    SysFreeString(text);
    return EqualsIgnoreCase(name, "Windows Internet Explorer") ||
           EqualsIgnoreCase(name, "Internet Explorer");
}

HWND FrameOf(ComCalls& calls, IWebBrowser2& entry) {
    SHANDLE_PTR window = 0;
    calls.Note(entry.get_HWND(&window), "get", "entry", "HWND");
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the browser gives its handle
    return reinterpret_cast<HWND>(window);
}

std::vector<HWND> VisibleWindows() {
    std::vector<HWND> windows;
    const auto collect = [](HWND window, LPARAM into) -> BOOL {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): what EnumWindows was given
        if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
        return TRUE;
    };
    // In the order of the screen, the front one first.
    EnumWindows(collect, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

}  // namespace tamrin
