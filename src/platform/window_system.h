#pragma once

#include <memory>
#include <string>

#include "platform/controls.h"
#include "platform/dialogs.h"

namespace tamrin {

// The windows of the program and what surrounds them.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    virtual std::unique_ptr<Form> Create(const FormSpec& spec) = 0;
    virtual Dialogs& dialogs() = 0;

    // The size of the screen in pixels; left and top are 0.
    virtual Place Screen() const = 0;

    // Twips (1/1440 inch) that one screen pixel takes: 15 on a screen of 96 dots per inch.
    virtual int TwipsPerPixelY() const = 0;

    // The clipboard's text, "" when it holds none. Setting it answers false when another program
    // keeps the clipboard to itself.
    virtual std::string ClipboardText() const = 0;
    virtual bool SetClipboardText(const std::string& text) = 0;

    // Whether the user holds a Ctrl key down, whichever window has the keyboard.
    virtual bool CtrlHeld() const = 0;

    // Opens a file or folder, or starts a program, as a double click on it would. False when the
    // system has nothing to open it with.
    virtual bool ShellOpen(const std::string& path) = 0;
};

}  // namespace tamrin
