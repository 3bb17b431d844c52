#pragma once

#include "app/frm_ie_auto_form.h"
#include "state/globals.h"

namespace tamrin {

// How the main window shows itself: the upper pane and its height, always on top, scroll bars, the
// notification area. The settings hold each choice as soon as it is made.
class DisplayOptions {
public:
    DisplayOptions(Globals& globals, Form& form, MainControls& controls);

    // Shows all settings in menus and controls (ApplyConf).
    void Apply();

    // Places the panes: what optDisp chose above, the record list below it.
    void Layout();

    // The height of the upper pane in twips. It is kept while the pane is not shown.
    int TopHeight() const;
    void SetTopHeight(int twips);

private:
    void BindEvents();
    void optDisp_Click(int index);
    void splTop_Change();

    Globals& globals_;
    Form& form_;
    MainControls& controls_;
};

}  // namespace tamrin
