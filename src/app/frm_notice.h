#pragma once

#include <memory>
#include <string>

#include "platform/window_system.h"

namespace tamrin {

// A line of text that stands over the main window for a second and takes no input.
class frmNotice {
public:
    frmNotice(WindowSystem& windows, const std::string& text, const Form& main);

private:
    std::unique_ptr<Form> form_;
};

}  // namespace tamrin
