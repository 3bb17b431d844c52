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
    virtual int TwipsPerPixelX() const = 0;
    virtual int TwipsPerPixelY() const = 0;

    // The clipboard's text, "" when it holds none.
    virtual std::string ClipboardText() const = 0;
};

}  // namespace tamrin
