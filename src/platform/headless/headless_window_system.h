#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/headless/headless_controls.h"
#include "platform/window_system.h"

namespace tamrin {

// Forms in memory on a screen of 1280 x 1024 pixels at 96 dots per inch. There is no clipboard but
// the text that was set.
class HeadlessWindowSystem : public WindowSystem {
public:
    explicit HeadlessWindowSystem(Dialogs& dialogs) : dialogs_(dialogs) {}

    std::unique_ptr<Form> Create(const FormSpec& spec) override;
    Dialogs& dialogs() override { return dialogs_; }
    Place Screen() const override { return {0, 0, 1280, 1024}; }
    int TwipsPerPixelX() const override { return 15; }
    int TwipsPerPixelY() const override { return 15; }
    std::string ClipboardText() const override { return clipboard_; }
    void SetClipboardText(std::string text) { clipboard_ = std::move(text); }

    // Ticks the timers of all forms; call it from the clock's DoEvents.
    void RunTimers(std::uint32_t now);

    // The form made last that still exists, null when there is none.
    HeadlessForm* last_form() { return forms_.empty() ? nullptr : forms_.back(); }

private:
    Dialogs& dialogs_;
    std::vector<HeadlessForm*> forms_;
    std::string clipboard_;
};

}  // namespace tamrin
