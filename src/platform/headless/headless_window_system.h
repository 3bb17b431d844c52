#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/headless_controls.h"
#include "platform/window_system.h"

namespace tamrin {

// Forms in memory on a screen of 1280 x 1024 pixels at 96 dots per inch. The clipboard holds only
// what the program sets, there is no keyboard, and no path can be opened.
class HeadlessWindowSystem : public WindowSystem {
public:
    explicit HeadlessWindowSystem(Dialogs& dialogs) : dialogs_(dialogs) {}

    std::unique_ptr<Form> Create(const FormSpec& spec) override;
    Dialogs& dialogs() override { return dialogs_; }
    Place Screen() const override { return {0, 0, 1280, 1024}; }
    int TwipsPerPixelY() const override { return 15; }
    std::string ClipboardText() const override { return clipboard_; }
    bool SetClipboardText(const std::string& text) override {
        clipboard_ = text;
        return true;
    }
    bool CtrlHeld() const override { return ctrl_held_; }
    bool ShellOpen(const std::string& path) override {
        opened_.push_back(path);
        return false;
    }

    // Ticks the timers of all forms; call it from the clock's DoEvents.
    void RunTimers(std::uint32_t now);

    // Acts as the user of each modal form; without it a modal form closes at once.
    std::function<void(HeadlessForm&)> onModal;

    // The newest form of that name that still exists, null when there is none.
    HeadlessForm* FindForm(std::string_view name);

    void HoldCtrl(bool held) { ctrl_held_ = held; }

    // The paths of all ShellOpen calls, in order.
    const std::vector<std::string>& opened() const { return opened_; }

private:
    Dialogs& dialogs_;
    std::vector<HeadlessForm*> forms_;
    std::string clipboard_;
    bool ctrl_held_ = false;
    std::vector<std::string> opened_;
};

}  // namespace tamrin
