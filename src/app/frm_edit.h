#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/window_system.h"

namespace tamrin {

// The dialog that edits one record by its fields.
class frmEdit {
public:
    explicit frmEdit(WindowSystem& windows);

    // The record as the user has changed it, or nothing when cancelled.
    std::optional<std::string> Edit(const std::string& line, Form& owner);

private:
    void cmbAct_Change();
    void cmdOk_Click();

    std::unique_ptr<Form> form_;
    ComboBox& cmbAct;
    Control& txtId;
    ComboBox& cmbType;
    Control& txtInDt;
    Control& txtSizeBar;
    Control& txtUserWait;
    std::string line_;
    std::optional<std::string> result_;
};

}  // namespace tamrin
