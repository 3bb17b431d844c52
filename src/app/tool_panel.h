#pragma once

#include <functional>
#include <memory>

#include "app/frm_ie_auto_form.h"
#include "platform/browser.h"
#include "state/globals.h"

namespace tamrin {

// The panel that shows where the attached browser window stands and which bars it has. The user's
// check marks show and hide the bars.
class ToolPanel {
public:
    // `browser` answers the attached window; null when there is none.
    ToolPanel(const Globals& globals, MainControls& controls,
              std::function<std::shared_ptr<Browser>()> browser);

    // Reads the window again, if the panel is shown.
    void Refresh();

private:
    void SwitchBars();

    const Globals& globals_;
    MainControls& controls_;
    std::function<std::shared_ptr<Browser>()> browser_;
    bool refreshing_ = false;
};

}  // namespace tamrin
