#pragma once

#include "platform/controls.h"

namespace tamrin {

// The main window's controls and menus. Of the context menus, mnuContext is the record list's and
// mnuListEdit the file list's.
const FormSpec& MainFormSpec();

// The main window's controls by name.
struct MainControls {
    explicit MainControls(Form& form);

    Control& cmdRec;
    Control& cmdPlay;
    Control& cmdStop;
    Control& optDispNothing;  // optDisp(0): the upper pane shows nothing
    Control& optDispFiles;    // optDisp(1): the file list
    Control& optDispTags;     // optDisp(2): the tag list
    ListBox& lstDetail;
    ListBox& lstCsv;
    Control& splTop;  // below the upper pane
    ListBox& lstDtList;
    // The tool panel: place and bars of the attached browser window.
    Control& txtPlace;
    Control& chkToolBar;
    Control& chkMenuBar;
    Control& chkAddressBar;
    Control& chkStatusBar;
    Control& chkFullScreen;
    Control& txtStatus;
    Control& txtUrl;
    Control& txthWnd;
    Control& Timer1;   // the poll for the active browser, and the watchdog of a run
    Control& Timer2;   // the tag list
    Control& Timer3;   // shows the chosen record in the page
    Control& tmrStop;  // tries again to stop, while events are still being recorded
    // The menu entries that show a state. The others are looked up where they are bound.
    Control& mnuRepeat;
    Control& mnuDispTop;
    Control& mnuScrollBar;
    Control& mnuToolPanel;
    Control& mnuTaskTray;
};

}  // namespace tamrin
