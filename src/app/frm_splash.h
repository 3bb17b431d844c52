#pragma once

#include <memory>
#include <string>

#include "platform/window_system.h"

namespace tamrin {

// What greets the user at the start: it stands over the main window for a moment, in nobody's way.
class frmSplash {
public:
    frmSplash(WindowSystem& windows, const std::string& version, const Form& main);

private:
    std::unique_ptr<Form> form_;
};

}  // namespace tamrin
