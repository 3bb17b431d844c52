#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/browser.h"
#include "platform/geometry.h"
#include "player/run_report.h"

namespace tamrin {

// What the player needs of the main window.
class PlayerHost {
public:
    virtual ~PlayerHost() = default;

    // The record list. A line's view lasts until events are handled.
    virtual int RecordCount() = 0;
    virtual std::string_view Record(int row) = 0;
    virtual void SelectRecord(int row) = 0;

    // The play count that the menu shows.
    virtual int GetRepeat() = 0;

    // Enables and disables the controls (SetMode).
    virtual void SetMode(std::string_view mode, bool on) = 0;

    virtual void SetStatus(const std::string& text) = 0;
    virtual void ShowMessage(const std::string& text, const std::string& title) = 0;
    virtual std::string ClipboardText() = 0;

    // Takes the browser of this run, connects its events, and drops the one before; null to only
    // drop.
    virtual void HoldBrowser(std::shared_ptr<Browser> browser) = 0;

    // The main window: whether it is seen, and its rectangle in screen pixels.
    virtual bool WindowVisible() = 0;
    virtual void SetWindowVisible(bool visible) = 0;
    virtual Rect WindowRect() = 0;

    // Moves the main window into the notification area where the user wants that, and back.
    virtual void EnterTray() = 0;
    virtual void LeaveTray() = 0;

    // Closes the main window, which ends the program.
    virtual void CloseWindow() = 0;

    virtual void RecordDone(const RecordReport& report) = 0;
};

}  // namespace tamrin
