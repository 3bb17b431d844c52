#pragma once

#include <cstdint>
#include <memory>

#include "platform/browser.h"
#include "platform/controls.h"
#include "state/globals.h"

namespace tamrin {

// The browser window that is attached: the one in which the user works while nothing runs. It is
// shown by its page's address and its window handle.
class Attachment {
public:
    Attachment(const Globals& globals, BrowserWindows& windows, Control& txtUrl, Control& txthWnd);

    // One step of the poll: attaches the window that has the keyboard focus. Without one the
    // attached window stays, until it is closed. During a recording or a run nothing changes.
    void AttachActiveBrowser();

    // The attached window, null when there is none.
    const std::shared_ptr<Browser>& browser() const { return target_ie_; }

    // Whether another window or page has been attached, or none, since this was asked last.
    bool TakeChanged();

    // Shows the handle in the other radix, decimal or hexadecimal.
    void txthWnd_DblClick();

    // Brings the attached window to the front.
    void BringToFront();

private:
    void Attach(std::shared_ptr<Browser> browser, const std::string& url);
    void Detach();
    void ShowHandle();

    const Globals& globals_;
    BrowserWindows& windows_;
    Control& txtUrl_;
    Control& txthWnd_;
    std::shared_ptr<Browser> target_ie_;
    bool hexadecimal_ = false;
    bool changed_ = false;
};

}  // namespace tamrin
