#include "platform/headless/console_dialogs.h"

#include <ostream>

namespace tamrin {

Answer ConsoleDialogs::MsgBox(const std::string& text, const std::string& title, Buttons buttons,
                              bool /*cancel_is_default*/) {
    if (!title.empty()) output_ << "[" << title << "] ";
    for (const char c : text) {
        if (c != '\r') output_ << c;
    }
    output_ << '\n' << std::flush;
    if (buttons == Buttons::kYesNo) return Answer::kNo;
    return buttons == Buttons::kOk ? Answer::kOk : Answer::kCancel;
}

}  // namespace tamrin
