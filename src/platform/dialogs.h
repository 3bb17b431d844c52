#pragma once

#include <string>

namespace tamrin {

enum class Buttons { kOk, kOkCancel, kYesNo, kYesNoCancel };
enum class Answer { kOk, kCancel, kYes, kNo };

// What a file dialog shows.
struct FileDialog {
    std::string title;     // "" for the system's own
    std::string filter;    // label of the filter, e.g. "CSVファイル(*.csv)"
    std::string pattern;   // its patterns, e.g. "*.csv;*.tamrin"
    std::string proposed;  // full path that it starts with
};

// The boxes that ask the user. Events are handled while one is open.
class Dialogs {
public:
    virtual ~Dialogs() = default;

    // Shows a message and answers the button pressed. Closing the box answers Cancel where there is
    // such a button, No where there is that one, else Ok. `cancel_is_default` makes Cancel the
    // button that Enter presses.
    virtual Answer MsgBox(const std::string& text, const std::string& title,
                          Buttons buttons = Buttons::kOk, bool cancel_is_default = false) = 0;

    // The full path of a file to write, "" when dismissed. The dialog itself asks before an
    // existing file is chosen, and a name typed without an extension gets the first of `pattern`.
    virtual std::string SaveFile(const FileDialog& dialog) = 0;

    // The full path of an existing file, "" when dismissed.
    virtual std::string OpenFile(const FileDialog& dialog) = 0;

    // The full path of a folder, without a final separator, "" when dismissed. `start` is the
    // folder that it begins with.
    virtual std::string OpenFolder(const std::string& title, const std::string& start) = 0;
};

}  // namespace tamrin
