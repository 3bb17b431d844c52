#pragma once

#include "platform/controls.h"

namespace tamrin {

// The main window's tables. Entries of its context menus work on the record list (mnuContext) and
// on the file list (mnuListEdit).
const FormSpec& MainFormSpec();

// The main window's controls by name.
struct MainControls {
    explicit MainControls(Form& form);

    Control& cmdRec;
    Control& cmdPlay;
    Control& cmdStop;
    Control& optDispNothing;  // optDisp(0): the upper pane shows nothing
    Control& optDispTags;     // optDisp(1): the tag list
    Control& optDispFiles;    // optDisp(2): the file list
    ListBox& lstDetail;
    ListBox& lstCsv;
    Control& splTop;  // below the upper pane
    ListBox& lstDtList;
    Control& txtStatus;
    Control& txtUrl;
    Control& txthWnd;
    Control& Timer1;   // the poll for the active browser, and the watchdog of a run
    Control& Timer2;   // the tag list
    Control& Timer3;   // shows the chosen record in the page
    Control& tmrStop;  // a stop that waits for an event to be recorded
    // The menu entries that show a state; the others are found where they are bound.
    Control& mnuRepeat;
    Control& mnuDispTop;
    Control& mnuScrollBar;
    Control& mnuTaskTray;
};

}  // namespace tamrin
