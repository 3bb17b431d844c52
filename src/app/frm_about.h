#pragma once

#include <memory>
#include <string>

#include "platform/window_system.h"

namespace tamrin {

// The about box, from which the system-information tool can be started.
class frmAbout {
public:
    frmAbout(WindowSystem& windows, const std::string& version);

    void ShowModal(Form& owner) { form_->ShowModal(owner); }

private:
    void cmdSysInfo_Click();

    WindowSystem& windows_;
    std::unique_ptr<Form> form_;
};

}  // namespace tamrin
