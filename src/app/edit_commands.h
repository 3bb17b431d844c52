#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/record_editor.h"
#include "platform/window_system.h"

namespace tamrin {

// The commands that edit records in a dialog.
class EditCommands {
public:
    EditCommands(WindowSystem& windows, Form& form, ListBox& list, RecordEditor& records)
        : windows_(windows), form_(form), list_(list), records_(records) {}

    void mnuEdit_Click();      // the current record by its fields
    void mnuEditLine_Click();  // the current record as text; several lines become several records
    void mnuEditAll_Click();   // the whole list as text

private:
    // Puts `after` in the place of a record, unless the record has changed or moved: a run or a
    // recording may have gone on behind the dialog.
    void Take(int row, const std::string& before, std::vector<std::string> after);

    WindowSystem& windows_;
    Form& form_;
    ListBox& list_;
    RecordEditor& records_;
};

// The dialogs of these commands. Each answers what the user has made of a record or of lines, or
// nothing when cancelled. As text, no lines are an empty text, and an empty text is one empty line.
std::optional<std::string> EditRecord(WindowSystem& windows, const std::string& line, Form& owner);
std::optional<std::vector<std::string>> EditLines(WindowSystem& windows,
                                                  const std::vector<std::string>& lines,
                                                  Form& owner);

}  // namespace tamrin
