#pragma once

#include <string>

#include "app/platform.h"
#include "app/scenario_files.h"
#include "state/globals.h"

namespace tamrin {

// The files that were open lately, as entries of the file menu.
class RecentFiles {
public:
    RecentFiles(Globals& globals, const Platform& platform, Form& form, ScenarioFiles& scenario);

    // Shows them in the menu.
    void Show();

private:
    void Open(std::size_t place);

    Globals& globals_;
    Platform platform_;
    Form& form_;
    ScenarioFiles& scenario_;
};

}  // namespace tamrin
