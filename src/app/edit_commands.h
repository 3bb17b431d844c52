#pragma once

#include "app/platform.h"
#include "app/record_editor.h"

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
    // Takes what became of a record, unless it is no longer where it was: a run may have gone on
    // behind the dialog, or the recorder.
    void Take(int row, const std::string& before, std::vector<std::string> after);

    WindowSystem& windows_;
    Form& form_;
    ListBox& list_;
    RecordEditor& records_;
};

}  // namespace tamrin
