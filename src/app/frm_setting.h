#pragma once

#include <memory>

#include "app/platform.h"
#include "state/globals.h"

namespace tamrin {

// The settings dialog. Its values are stored when it is closed by "Ok"; the automatic pointer, the
// recording of changes only, and the way back to the defaults take effect at once.
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
    // The folder in the text box, absolute; the program's own when it is empty.
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
