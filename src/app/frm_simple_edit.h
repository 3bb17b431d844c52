#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/window_system.h"

namespace tamrin {

// The dialog that edits lines as plain text.
class frmSimpleEdit {
public:
    explicit frmSimpleEdit(WindowSystem& windows);

    // The lines as the user has changed them, or nothing when cancelled. An empty text is one empty
    // line; no lines are shown as an empty text.
    std::optional<std::vector<std::string>> Edit(const std::vector<std::string>& lines,
                                                 Form& owner);

private:
    std::unique_ptr<Form> form_;
    std::optional<std::vector<std::string>> result_;
};

}  // namespace tamrin
