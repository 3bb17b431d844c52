#include "platform/explorer/box_window.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tamrin {
namespace {

// The system's dialog boxes, and the pages that a page shows as one.
constexpr std::array<std::wstring_view, 2> kBoxClasses = {L"#32770",
                                                          L"Internet Explorer_TridentDlgFrame"};

struct Search {
    HWND browser;
    HWND found;
};

bool IsBox(HWND window) {
    if (!IsWindowVisible(window)) return false;
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return std::find(kBoxClasses.begin(), kBoxClasses.end(), name) != kBoxClasses.end();
}

BOOL CALLBACK Look(HWND window, LPARAM into) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what EnumWindows was given
    auto* const search = reinterpret_cast<Search*>(into);
    // A box may belong to another process than the window before which it stands, and to a part of
    // that window.
    if (!IsBox(window) || GetAncestor(window, GA_ROOTOWNER) != search->browser) return TRUE;
    search->found = window;
    return FALSE;
}

}  // namespace

HWND BoxOf(HWND browser) {
    if (!browser) return nullptr;
    Search search{GetAncestor(browser, GA_ROOTOWNER), nullptr};
    EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace tamrin
