#pragma once

#include "platform/controls.h"

namespace tamrin {

// The main window's tables.
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
    ListBox& lstDtList;
    Control& txtStatus;
    Control& txtUrl;
    Control& txthWnd;
    Control& Timer1;
    Control& mnuSave;
    Control& mnuSaveAs;
    Control& mnuClose;
    Control& mnuPlay;
    Control& mnuRepeat;
    Control& mnuTaskTray;
};

}  // namespace tamrin
