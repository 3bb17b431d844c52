#pragma once

#include <functional>

#include "app/frm_ie_auto_form.h"
#include "state/globals.h"

namespace tamrin {

// How the main window looks: its place, the upper pane and its height, the tool panel, always on
// top, scroll bars, the notification area. Each choice is stored in the settings at once.
class DisplayOptions {
public:
    DisplayOptions(Globals& globals, Form& form, MainControls& controls);

    // Called when the tool panel has been shown or hidden.
    std::function<void()> onToolPanel;

    // Shows all settings in menus and controls (ApplyConf).
    void Apply();
    // Shows the play count in its menu entry, as Apply does among the others.
    void ShowPlayCount();

    // Gives the window and its panes their place in the settings, and writes the settings of their
    // present place. A pane that is not shown keeps its height.
    void PlaceWindow();
    void KeepPlace();

private:
    void BindEvents();
    // Places the panes: the one that optDisp chose above, the record list below it.
    void Layout();
    void optDisp_Click(int index);
    void splTop_Change();

    Globals& globals_;
    Form& form_;
    MainControls& controls_;
};

}  // namespace tamrin
