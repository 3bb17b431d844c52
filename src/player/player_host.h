#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/geometry.h"

namespace tamrin {

// What the player needs of the main window.
class PlayerHost {
public:
    virtual ~PlayerHost() = default;

    // The record list. A line's view lasts until events are handled.
    virtual int RecordCount() = 0;
    virtual std::string_view Record(int row) = 0;

    virtual void SetStatus(const std::string& text) = 0;
    virtual void ShowMessage(const std::string& text, const std::string& title) = 0;
    virtual std::string ClipboardText() = 0;

    // The main window: where it stands on the screen, in pixels; nothing while it is hidden.
    virtual std::optional<Rect> WindowRect() = 0;
    virtual void SetWindowVisible(bool visible) = 0;
};

}  // namespace tamrin
