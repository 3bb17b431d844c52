#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "platform/dialogs.h"

namespace tamrin {

// Windows' own message boxes, and its file and folder dialogs.
class WindowsDialogs : public Dialogs {
public:
    // `owner` answers the window that a dialog belongs to, null for none.
    explicit WindowsDialogs(std::function<HWND()> owner) : owner_(std::move(owner)) {}

    Answer MsgBox(const std::string& text, const std::string& title, Buttons buttons,
                  bool cancel_is_default) override;
    std::string SaveFile(const FileDialog& dialog) override;
    std::string OpenFile(const FileDialog& dialog) override;
    std::string OpenFolder(const std::string& title, const std::string& start) override;

private:
    std::function<HWND()> owner_;
};

}  // namespace tamrin
