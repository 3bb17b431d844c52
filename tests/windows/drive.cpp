// Reads the windows of other programs for the scripts. Its arguments are a question:
//   window CLASS         the X window of the window of that class, then the X window in front
//   gone CLASS           nothing, once there is none
//   text CLASS [KIND]    its title; the texts of its controls of a kind (Static, Edit)
//   lines CLASS N        the lines of its list box number N
//   point CLASS CAPTION  the middle of its button with that caption, as X Y
//   point CLASS N LINE   the middle of a line of its list box number N
// It waits for the window for a minute, and fails when there is no such thing.

#include <windows.h>

#include <iostream>
#include <string>
#include <vector>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

// Of a window, or of a line of a list box.
void PrintText(HWND window, UINT length_message = WM_GETTEXTLENGTH, UINT text_message = WM_GETTEXT,
               WPARAM line = 0) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, length_message, line, 0)), 0);
    SendMessageW(window, text_message, text_message == WM_GETTEXT ? text.size() + 1 : line,
                 reinterpret_cast<LPARAM>(text.data()));
    std::cout << Utf8(text) << '\n';
}

// The control of that kind that was made after `number` others; nullptr when there is none.
HWND Control(HWND window, const std::wstring& kind, int number) {
    HWND control = nullptr;
    do control = FindWindowExW(window, control, kind.c_str(), nullptr);
    while (control && number-- > 0);
    return control;
}

bool Answer(const std::vector<std::wstring>& words) {
    const std::wstring& what = words.at(0);
    HWND window = nullptr;
    const auto so = [&] {
        for (int i = 0; (window = Control(nullptr, words.at(1), i)); ++i) {
            if (IsWindowVisible(window)) break;
        }
        return (what == L"gone") == !window;
    };
    for (int pauses = 0; !so(); ++pauses) {
        if (pauses == 6000) return false;
        Sleep(10);
    }
    const auto list = [&] { return Control(window, L"ListBox", std::stoi(words.at(2))); };
    if (what == L"window") {
        for (const HWND shown : {window, GetForegroundWindow()}) {
            std::cout << reinterpret_cast<std::uintptr_t>(
                             GetPropW(shown, L"__wine_x11_whole_window"))
                      << '\n';
        }
    } else if (what == L"text" && words.size() == 2) {
        PrintText(window);
    } else if (what == L"text") {
        HWND control = nullptr;
        for (int i = 0; (control = Control(window, words[2], i)); ++i) PrintText(control);
    } else if (what == L"lines") {
        const LRESULT count = SendMessageW(list(), LB_GETCOUNT, 0, 0);
        for (int i = 0; i < count; ++i) PrintText(list(), LB_GETTEXTLEN, LB_GETTEXT, i);
    } else if (what == L"point") {
        const bool is_button = words.size() == 3;
        const HWND control =
            is_button ? FindWindowExW(window, nullptr, L"Button", words.at(2).c_str()) : list();
        if (!control) return false;
        RECT area{};
        if (is_button)
            GetClientRect(control, &area);
        else
            SendMessageW(control, LB_GETITEMRECT, std::stoi(words.at(3)),
                         reinterpret_cast<LPARAM>(&area));
        MapWindowPoints(control, nullptr, reinterpret_cast<POINT*>(&area), 2);
        std::cout << (area.left + area.right) / 2 << ' ' << (area.top + area.bottom) / 2 << '\n';
    }
    return true;
}

}  // namespace
}  // namespace tamrin

int wmain(int count, wchar_t** words) { return tamrin::Answer({words + 1, words + count}) ? 0 : 1; }
