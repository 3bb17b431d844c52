#pragma once

#include <memory>

#include "app/platform.h"
#include "state/globals.h"

namespace tamrin {

// The settings dialog. "Ok" stores its values. Three things take effect at once: the automatic
// pointer, recording changes only, and going back to the defaults.
class frmSetting {
public:
    frmSetting(Globals& globals, const Platform& platform);

    void ShowModal(Form& owner);

private:
    void BindEvents();
    void Form_Load();
    void cmdSaveFolder_Click();
    void cmdBrowser_Click();
    void cmdSetDefault_Click();
    void cmdClose_Click(int index);
    void txtSaveFolderPath_Change();
    // The absolute path of the folder in the text box; the program's folder when the box is empty.
    std::string SaveFolder() const;

    Globals& globals_;
    Platform platform_;
    std::unique_ptr<Form> form_;
    Control& txtSaveFolderPath;
    ComboBox& cmbMaxWaitTime;
    Control& chkQuitAfterPlay;
    Control& chkMouseClick;
    Control& chkCipherData;
    Control& chkRecChangeData;
    Control& chkAutoPoint;
    Control& txtBrowser;
};

}  // namespace tamrin
