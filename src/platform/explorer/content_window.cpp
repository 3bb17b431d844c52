#include "platform/explorer/content_window.h"

#include <cmath>
#include <cwchar>
#include <vector>

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_scale.h"

namespace tamrin {
namespace {

constexpr wchar_t kContentClass[] = L"Internet Explorer_Server";

BOOL CALLBACK Collect(HWND window, LPARAM into) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    if (std::wcscmp(name, kContentClass) == 0)
        // NOLINTNEXTLINE(performance-no-int-to-ptr): what EnumChildWindows was given
        reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
    return TRUE;
}

}  // namespace

HWND FindIeServerWindow(HWND browser) {
    std::vector<HWND> windows;
    if (!browser) return nullptr;
    EnumChildWindows(browser, Collect, reinterpret_cast<LPARAM>(&windows));
    if (windows.empty()) return nullptr;
    HWND chosen = windows.front();
    for (std::size_t i = 0; windows.size() > 1 && i < windows.size(); ++i) {
        RECT place{};
        GetWindowRect(windows[i], &place);
        if (place.bottom - place.top > 0) chosen = windows[i];
    }
    return chosen;
}

std::optional<ScreenPoint> ScreenPointOf(const Element& element, HWND content) {
    double x = 0;
    double y = 0;
    Element at = element;
    ExplorerDocument* page = nullptr;
    while (at) {
        const auto place = at.getBoundingClientRect();
        if (!place) return std::nullopt;
        x += place->left;
        y += place->top;
        page = &ExplorerElement::Of(at)->page();
        at = page->holder();
        if (!at) break;
        // A frame's page begins inside its border.
        const DispatchObject& frame = ExplorerElement::Of(at)->object();
        x += frame.Get("clientLeft").Number().value_or(0);
        y += frame.Get("clientTop").Number().value_or(0);
    }
    if (!page) return std::nullopt;
    const double scale = ScaleOf(*page);
    RECT window{};
    if (!GetWindowRect(content, &window)) return std::nullopt;
    return ScreenPoint{window.left + static_cast<int>(std::lround(x * scale)),
                       window.top + static_cast<int>(std::lround(y * scale))};
}

}  // namespace tamrin
