#pragma once

#include <string>

#include "platform/input.h"

namespace tamrin {

// A dialog box that a page shows (alert, confirm, prompt, or the question before it is left), and
// the keys that a person would answer it with.
class PageDialog {
public:
    // The box as the protocol describes it: `type` is "alert", "confirm", "prompt" or
    // "beforeunload"; `session` is the one through which it is answered.
    PageDialog(std::string type, std::string default_text, std::string session);

    // Takes a key: ENTER presses the button that has the focus (at first "OK"; TAB, LEFT and RIGHT
    // move it), a blank does so, too, but in a prompt's text. ESC presses "Cancel". Characters go
    // into a prompt's text in place of its default. True when the key closes the box.
    bool TakeKey(const KeyStroke& key);

    // What the key that closed it chose.
    bool accepted() const { return accepted_; }
    // The prompt's text.
    const std::string& text() const { return text_; }

    const std::string& type() const { return type_; }
    const std::string& session() const { return session_; }

private:
    enum class Focus { kText, kOk, kCancel };

    bool Close(bool accepted);
    void MoveFocus(bool forward);

    std::string type_;
    std::string text_;
    std::string session_;
    Focus focus_;
    bool typed_ = false;
    bool accepted_ = false;
};

}  // namespace tamrin
