#pragma once

#include <string>

#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/scenario_files.h"
#include "state/globals.h"

namespace tamrin {

// The list of the scenario files in the save folder.
class FileList {
public:
    FileList(Globals& globals, const Platform& platform, Form& form, MainControls& controls,
             ScenarioFiles& scenario);

    // Lists the folder anew; the open scenario is marked when it is among its files.
    void RefreshFileList();

    // Marks the open scenario, or nothing when it is not among the files. That is no choice of the
    // user's, so nothing is opened.
    void SelectOpenFile();

    // Another folder is chosen for the scenario files.
    void mnuOpenFolder_Click();
    void mnuListDelFile_Click();

private:
    void lstCsv_Click();
    void lstCsv_DblClick();
    void lstCsv_MouseDown();
    std::string PathOf(int position) const;
    Globals& globals_;
    Platform platform_;
    Form& form_;
    ListBox& list_;
    ScenarioFiles& scenario_;
    bool selecting_ = false;
};

}  // namespace tamrin
