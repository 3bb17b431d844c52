#include "app/edit_commands.h"

#include "app/frm_edit.h"
#include "app/frm_simple_edit.h"

namespace tamrin {
namespace {

constexpr const char* kChanged = "編集中に記録が変更されました。編集した内容は反映されません。";

}  // namespace

void EditCommands::Take(int row, const std::string& before, std::vector<std::string> after) {
    if (list_.Line(row) != before || row >= list_.Count()) {
        windows_.dialogs().MsgBox(kChanged, "Tamrin");
        return;
    }
    if (after.size() == 1 && after.front() == before) return;
    records_.Replace(row, 1, std::move(after));
    list_.SetListIndex(row);
}

void EditCommands::mnuEdit_Click() {
    const int row = list_.ListIndex();
    if (row < 0) return;
    const std::string before(list_.Line(row));
    if (auto after = frmEdit(windows_).Edit(before, form_)) Take(row, before, {*std::move(after)});
}

void EditCommands::mnuEditLine_Click() {
    const int row = list_.ListIndex();
    if (row < 0) return;
    const std::string before(list_.Line(row));
    if (auto after = frmSimpleEdit(windows_).Edit({before}, form_)) {
        Take(row, before, *std::move(after));
    }
}

void EditCommands::mnuEditAll_Click() {
    const std::vector<std::string> before = records_.Lines();
    auto after = frmSimpleEdit(windows_).Edit(before, form_);
    if (!after) return;
    // An emptied text is an empty list, and not a list of one empty record.
    if (after->size() == 1 && after->front().empty() && before.size() != 1) after->clear();
    if (*after == before) return;
    if (records_.Lines() != before) {
        windows_.dialogs().MsgBox(kChanged, "Tamrin");
        return;
    }
    records_.Replace(0, list_.Count(), *std::move(after));
}

}  // namespace tamrin
