#include "platform/explorer/screen_windows.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace tamrin {
namespace {

constexpr std::wstring_view kContentClass = L"Internet Explorer_Server";
constexpr std::array<std::wstring_view, 2> kFrameClasses = {L"Chrome_WidgetWin_1", L"IEFrame"};
// The system's dialog boxes, and pages shown as a dialog box.
constexpr std::array<std::wstring_view, 2> kBoxClasses = {L"#32770",
                                                          L"Internet Explorer_TridentDlgFrame"};

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

BOOL CALLBACK Collect(HWND window, LPARAM into) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what the enumeration was given
    reinterpret_cast<std::vector<HWND>*>(into)->push_back(window);
    return TRUE;
}

// All content windows of a browser window, those of the tabs in the background too.
std::vector<HWND> AllContents(HWND browser) {
    std::vector<HWND> windows;
    if (browser) EnumChildWindows(browser, Collect, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [](HWND window) { return ClassOf(window) != kContentClass; });
    return windows;
}

bool Hangs(HWND window) { return IsHungAppWindow(window) != 0; }

bool InFront(HWND window) { return GetForegroundWindow() == window; }

bool TakeFront(HWND window) { return SetForegroundWindow(window) != 0 && InFront(window); }

// Moves the mouse by nothing: the program with the last input may change the front window.
void MakeInput() {
    INPUT input{};
    input.type = INPUT_MOUSE;
    SendInput(1, &input, sizeof input);
}

void TakeFrontWithSharedInput(HWND window) {
    const HWND front = GetForegroundWindow();
    // Attached to a thread that hangs, this one would hang too.
    if (!front || Hangs(front)) return;
    const DWORD others = GetWindowThreadProcessId(front, nullptr);
    const DWORD own = GetCurrentThreadId();
    if (others == own || !AttachThreadInput(own, others, TRUE)) return;
    SetForegroundWindow(window);
    AttachThreadInput(own, others, FALSE);
}

}  // namespace

std::vector<HWND> VisibleWindows() {
    std::vector<HWND> windows;
    EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
    std::erase_if(windows, [](HWND window) { return !IsWindowVisible(window); });
    return windows;
}

HWND FindIeServerWindow(HWND browser) {
    const std::vector<HWND> windows = AllContents(browser);
    if (windows.empty()) return nullptr;
    HWND chosen = windows.front();
    for (const HWND window : windows) {
        RECT place{};
        GetWindowRect(window, &place);
        if (place.bottom - place.top > 0) chosen = window;
    }
    return chosen;
}

std::vector<ContentWindow> ContentWindows(const std::vector<HWND>& frames) {
    std::vector<ContentWindow> found;
    for (const std::wstring_view frame_class : kFrameClasses) {
        for (const HWND frame : frames) {
            if (ClassOf(frame) != frame_class) continue;
            const HWND shown = FindIeServerWindow(frame);
            for (const HWND content : AllContents(frame)) {
                const bool hangs = Hangs(frame) || Hangs(content);
                if (hangs || content == shown) found.push_back({frame, content, hangs});
            }
        }
    }
    return found;
}

HWND BoxOf(HWND browser) {
    if (!browser) return nullptr;
    const HWND top = GetAncestor(browser, GA_ROOTOWNER);
    for (const HWND window : VisibleWindows()) {
        const bool box =
            std::find(kBoxClasses.begin(), kBoxClasses.end(), ClassOf(window)) != kBoxClasses.end();
        // The box may belong to another process than the window, and to a part of the window.
        if (box && GetAncestor(window, GA_ROOTOWNER) == top) return window;
    }
    return nullptr;
}

void BringToForeground(HWND window) {
    if (!IsWindow(window)) return;
    // Does not wait for a browser that hangs.
    if (IsIconic(window)) ShowWindowAsync(window, SW_RESTORE);
    const HWND box = IsWindowEnabled(window) ? nullptr : GetLastActivePopup(window);
    if (box && IsWindowVisible(box) && IsWindowEnabled(box)) window = box;
    if (InFront(window) || TakeFront(window)) return;
    MakeInput();
    if (!TakeFront(window)) TakeFrontWithSharedInput(window);
}

}  // namespace tamrin
