#pragma once

#include <cstddef>
#include <string>

#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/scenario_files.h"
#include "state/globals.h"

namespace tamrin {

// The files to choose a scenario from: the list of the save folder, and the recently opened files
// in the file menu.
class FileList {
public:
    FileList(Globals& globals, const Platform& platform, Form& form, MainControls& controls,
             ScenarioFiles& scenario);

    // Reads the folder again, and selects the open scenario in the list.
    void RefreshFileList();

    // Selects the open scenario in the list, or nothing when it is not there. Opens nothing.
    void SelectOpenFile();

    // Shows the recently opened files in the menu.
    void ShowRecentFiles();

    void mnuOpenFolder_Click();  // asks for another save folder
    void mnuListDelFile_Click();

private:
    void lstCsv_Click();
    void lstCsv_DblClick();
    void lstCsv_MouseDown();
    void OpenRecent(std::size_t place);
    std::string PathOf(int position) const;

    Globals& globals_;
    Platform platform_;
    Form& form_;
    ListBox& list_;
    ScenarioFiles& scenario_;
    bool selecting_ = false;  // by code and not by the user
};

}  // namespace tamrin
