#pragma once

#include <iosfwd>

#include "platform/dialogs.h"

namespace tamrin {

// Dialogs without a user: a message goes to `output` with its title, and the answer is the button
// that changes nothing (Cancel where there is one). File and folder dialogs are dismissed.
class ConsoleDialogs : public Dialogs {
public:
    explicit ConsoleDialogs(std::ostream& output) : output_(output) {}

    Answer MsgBox(const std::string& text, const std::string& title, Buttons buttons,
                  bool cancel_is_default) override;
    std::string SaveFile(const FileDialog& /*dialog*/) override { return ""; }
    std::string OpenFile(const FileDialog& /*dialog*/) override { return ""; }
    std::string OpenFolder(const std::string& /*title*/, const std::string& /*start*/) override {
        return "";
    }

private:
    std::ostream& output_;
};

}  // namespace tamrin
