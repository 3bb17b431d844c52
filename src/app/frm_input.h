#pragma once

#include <memory>
#include <optional>

#include "platform/window_system.h"

namespace tamrin {

// The dialog that asks how many times a scenario is played.
class frmInput {
public:
    explicit frmInput(WindowSystem& windows);

    // A count from 1 to 99999, or nothing when cancelled.
    std::optional<int> Ask(int count, Form& owner);

private:
    void cmdOk_Click();

    WindowSystem& windows_;
    std::unique_ptr<Form> form_;
    std::optional<int> result_;
};

}  // namespace tamrin
