// A hand that reads the windows of another program, for the scripts beside this file:
//   drive wait CLASS            waits until a window of that class is seen; prints its title
//   drive gone CLASS            waits until none is
//   drive lines CLASS N         prints the lines of its list box number N
//   drive text CLASS N          prints the content of its text box number N
//   drive label CLASS           prints its labels
//   drive point CLASS CAPTION   prints the middle of its button with that caption, as X Y
//   drive list CLASS N ROW      prints a point of a row of its list box number N, as X Y
//   drive close CLASS           closes it by its close box
// Ends with 0 when it was so, otherwise with 1.

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kAttempts = 500;
constexpr DWORD kPauseMs = 20;

HWND Seen(const std::wstring& window_class) {
    const HWND window = FindWindowW(window_class.c_str(), nullptr);
    return window && IsWindowVisible(window) ? window : nullptr;
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1,
                      L'\0');
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

// The controls of a window that are of one class, in the order in which they were made.
std::vector<HWND> Children(HWND window, const wchar_t* window_class) {
    std::vector<HWND> children;
    for (HWND child = nullptr; (child = FindWindowExW(window, child, window_class, nullptr));) {
        children.push_back(child);
    }
    return children;
}

HWND Child(HWND window, const wchar_t* window_class, const std::wstring& number) {
    const auto children = Children(window, window_class);
    const auto at = static_cast<std::size_t>(std::stoi(number));
    return at < children.size() ? children[at] : nullptr;
}

void Print(const std::wstring& text) { std::printf("%s\n", Utf8(text).c_str()); }

int PrintLines(HWND list) {
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        const auto row = static_cast<WPARAM>(i);
        std::wstring line(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, row, 0)) + 1,
                          L'\0');
        SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(line.data()));
        line.pop_back();
        Print(line);
    }
    return 0;
}

int PrintPoint(HWND window, POINT point) {
    ClientToScreen(window, &point);
    std::printf("%ld %ld\n", point.x, point.y);
    return 0;
}

int PrintButton(HWND window, const std::wstring& caption) {
    for (const HWND button : Children(window, L"Button")) {
        if (TextOf(button) != caption) continue;
        RECT client{};
        GetClientRect(button, &client);
        return PrintPoint(button, {client.right / 2, client.bottom / 2});
    }
    return 1;
}

int PrintRow(HWND list, const std::wstring& row) {
    const auto height = static_cast<LONG>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    const auto top = static_cast<LONG>(SendMessageW(list, LB_GETTOPINDEX, 0, 0));
    return PrintPoint(list, {30, (std::stoi(row) - top) * height + height / 2});
}

int Drive(const std::vector<std::wstring>& words) {
    const std::wstring& act = words.at(1);
    const bool gone = act == L"gone";
    HWND window = nullptr;
    for (int i = 0; i < kAttempts; ++i) {
        window = Seen(words.at(2));
        if ((window == nullptr) == gone) break;
        Sleep(kPauseMs);
    }
    if ((window == nullptr) != gone) return 1;
    if (act == L"close") PostMessageW(window, WM_CLOSE, 0, 0);
    if (act == L"wait") Print(TextOf(window));
    if (act == L"lines") return PrintLines(Child(window, L"ListBox", words.at(3)));
    if (act == L"text") Print(TextOf(Child(window, L"Edit", words.at(3))));
    if (act == L"point") return PrintButton(window, words.at(3));
    if (act == L"list") return PrintRow(Child(window, L"ListBox", words.at(3)), words.at(4));
    if (act == L"label") {
        for (const HWND label : Children(window, L"Static")) Print(TextOf(label));
    }
    return 0;
}

}  // namespace
}  // namespace tamrin

int wmain(int count, wchar_t** words) { return tamrin::Drive({words, words + count}); }
