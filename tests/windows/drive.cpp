// Reads the windows of other programs for the scripts. Each line of the input is a question, its
// words parted by tabs:
//   title CLASS          the title of the window of that class
//   active               the title of the window in front
//   gone CLASS           nothing, once there is none
//   close CLASS          nothing; closes it by its close box
//   text CLASS KIND [N]  the texts of its controls of a kind (Static, Edit), or of number N
//   lines CLASS N        the lines of its list box number N
//   point CLASS CAPTION  the middle of its button with that caption, as X Y
//   row CLASS N ROW      a point of a row of its list box number N, as X Y
// An answer ends with the line "." or, when it is not so within a minute, "?".

#include <windows.h>

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kTimeoutMs = 60000;
constexpr DWORD kPauseMs = 10;

using Words = std::vector<std::wstring>;

void Print(std::wstring text) {
    std::erase(text, L'\r');
    std::cout << Utf8(text) << '\n';
}

std::wstring Text(HWND window, UINT length_message, UINT text_message, WPARAM row) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, length_message, row, 0));
    std::wstring text(length + 1, L'\0');
    SendMessageW(window, text_message, text_message == WM_GETTEXT ? text.size() : row,
                 reinterpret_cast<LPARAM>(text.data()));
    text.resize(length);
    return text;
}

std::wstring Text(HWND window) { return Text(window, WM_GETTEXTLENGTH, WM_GETTEXT, 0); }

// The controls of a window that are of one class, in the order in which they were made.
std::vector<HWND> Controls(HWND window, const std::wstring& control_class) {
    std::vector<HWND> controls;
    for (HWND child = nullptr;
         (child = FindWindowExW(window, child, control_class.c_str(), nullptr));) {
        controls.push_back(child);
    }
    return controls;
}

bool PrintPoint(HWND window, POINT point) {
    ClientToScreen(window, &point);
    std::cout << point.x << ' ' << point.y << '\n';
    return true;
}

bool Answer(const Words& words) {
    const std::wstring& what = words.at(0);
    HWND window = GetForegroundWindow();
    const auto so = [&] {
        window = nullptr;
        do {
            window = FindWindowExW(nullptr, window, words.at(1).c_str(), nullptr);
        } while (window && !IsWindowVisible(window));
        return (what == L"gone") == !window;
    };
    for (const ULONGLONG start = GetTickCount64(); what != L"active" && !so(); Sleep(kPauseMs)) {
        if (GetTickCount64() - start > kTimeoutMs) return false;
    }
    if (what == L"close") return PostMessageW(window, WM_CLOSE, 0, 0) != 0;
    if (what == L"title" || what == L"active") Print(Text(window));
    if (what == L"text") {
        const auto controls = Controls(window, words.at(2));
        for (std::size_t i = 0; i < controls.size(); ++i) {
            if (words.size() < 4 || std::stoul(words[3]) == i) Print(Text(controls[i]));
        }
    } else if (what == L"point") {
        for (const HWND button : Controls(window, L"Button")) {
            RECT client{};
            GetClientRect(button, &client);
            if (Text(button) == words.at(2)) {
                return PrintPoint(button, {client.right / 2, client.bottom / 2});
            }
        }
        return false;
    } else if (what == L"lines" || what == L"row") {
        const HWND list = Controls(window, L"ListBox").at(std::stoul(words.at(2)));
        const auto ask = [list](UINT message) {
            return static_cast<int>(SendMessageW(list, message, 0, 0));
        };
        if (what == L"row") {
            const int row = std::stoi(words.at(3)) - ask(LB_GETTOPINDEX);
            const int height = ask(LB_GETITEMHEIGHT);
            return PrintPoint(list, {30, height * row + height / 2});
        }
        for (int row = 0, count = ask(LB_GETCOUNT); row < count; ++row) {
            Print(Text(list, LB_GETTEXTLEN, LB_GETTEXT, static_cast<WPARAM>(row)));
        }
    }
    return true;
}

}  // namespace
}  // namespace tamrin

int main() {
    for (std::string line; std::getline(std::cin, line);) {
        tamrin::Words words;
        std::wistringstream text(tamrin::Wide(line));
        for (std::wstring word; std::getline(text, word, L'\t');) words.push_back(word);
        bool found = false;
        try {
            found = tamrin::Answer(words);
        } catch (const std::out_of_range&) {  // the window went, and its controls with it
        }
        std::cout << (found ? ".\n" : "?\n") << std::flush;
    }
}
