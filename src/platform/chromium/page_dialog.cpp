#include "platform/chromium/page_dialog.h"

#include <utility>

namespace tamrin {

PageDialog::PageDialog(std::string type, std::string default_text, std::string session)
    : type_(std::move(type)),
      text_(std::move(default_text)),
      session_(std::move(session)),
      focus_(type_ == "prompt" ? Focus::kText : Focus::kOk) {}

bool PageDialog::TakeKey(const KeyStroke& key) {
    if (key.ctrl || key.alt) return false;
    if (key.name == "ESC") return Close(type_ == "alert");
    if (key.name == "ENTER") return Close(focus_ != Focus::kCancel);
    if (key.name == "TAB") MoveFocus(!key.shift);
    if (focus_ == Focus::kText) {
        if (!key.text.empty()) text_ = typed_ ? text_ + key.text : key.text;
        typed_ = typed_ || !key.text.empty();
        return false;
    }
    if (key.text == " ") return Close(focus_ != Focus::kCancel);
    if (key.name == "LEFT" || key.name == "RIGHT") MoveFocus(key.name == "RIGHT");
    return false;
}

bool PageDialog::Close(bool accepted) {
    accepted_ = accepted;
    return true;
}

void PageDialog::MoveFocus(bool forward) {
    if (type_ == "alert") return;
    if (type_ != "prompt") {
        focus_ = focus_ == Focus::kOk ? Focus::kCancel : Focus::kOk;
        return;
    }
    const int next = static_cast<int>(focus_) + (forward ? 1 : 2);
    focus_ = static_cast<Focus>(next % 3);
}

}  // namespace tamrin
