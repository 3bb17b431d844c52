#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace tamrin::test {

// A window of a thread of its own, as another program has it: a text of several lines, a button, a
// menu with one entry, and bare ground to click on.
class OtherWindow {
public:
    // At a place on the screen, in front and with the focus in its text.
    explicit OtherWindow(const RECT& place);
    ~OtherWindow();
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

    // Begins anew: the text, all of it before the caret, and the focus in it or on the button.
    void SetText(const std::wstring& text);
    void FocusButton();
    std::wstring Text() const;
    // Where the selection begins and ends.
    std::pair<int, int> Selection() const;

    HWND window() const { return window_; }

    // How often the menu entry was chosen, the button pressed, and the ground clicked on with each
    // button.
    std::atomic<int> entries = 0;
    std::atomic<int> presses = 0;
    std::atomic<int> clicks = 0;
    std::atomic<int> right_clicks = 0;
    // How long it works on each character.
    std::atomic<int> works_ms = 0;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wide, LPARAM wider);
    static LRESULT CALLBACK TextProcedure(HWND window, UINT message, WPARAM wide, LPARAM wider);
    LRESULT Handle(HWND window, UINT message, WPARAM wide, LPARAM wider);
    void Run(const RECT& place);

    HWND window_ = nullptr;
    HWND text_ = nullptr;
    HWND button_ = nullptr;
    WNDPROC text_procedure_ = nullptr;
    HANDLE shown_;
    std::thread thread_;
};

}  // namespace tamrin::test
