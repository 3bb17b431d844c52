#include "app/display_options.h"

#include <algorithm>

namespace tamrin {
namespace {

constexpr int kTwipsPerPixel = 15;  // of a 96 dpi screen, in which controls are placed
constexpr int kMinPane = 30;        // pixels, of either pane
constexpr int kGap = 3;             // between the record list and what is below it

// Turns a menu entry over, and its setting with it. A switch of the command line may have set the
// entry alone.
void Turn(Control& menu, bool& setting) {
    setting = !menu.Checked();
    menu.SetChecked(setting);
}

}  // namespace

DisplayOptions::DisplayOptions(Globals& globals, Form& form, MainControls& controls)
    : globals_(globals), form_(form), controls_(controls) {
    BindEvents();
}

void DisplayOptions::BindEvents() {
    Settings& settings = globals_.settings;
    controls_.optDispNothing.onClick = [this] { optDisp_Click(0); };
    controls_.optDispFiles.onClick = [this] { optDisp_Click(1); };
    controls_.optDispTags.onClick = [this] { optDisp_Click(2); };
    controls_.splTop.onChange = [this] { splTop_Change(); };
    controls_.mnuTaskTray.onClick = [&] { Turn(controls_.mnuTaskTray, settings.tasktray); };
    controls_.mnuDispTop.onClick = [&] {
        Turn(controls_.mnuDispTop, settings.disp_top);
        form_.SetTopMost(settings.disp_top);
    };
    controls_.mnuScrollBar.onClick = [&] {
        Turn(controls_.mnuScrollBar, settings.scroll_bar);
        Apply();
    };
    controls_.mnuToolPanel.onClick = [this] {
        Turn(controls_.mnuToolPanel, globals_.options.tool_panel);
        Layout();
        if (onToolPanel) onToolPanel();
    };
}

void DisplayOptions::Apply() {
    Settings& settings = globals_.settings;
    controls_.mnuTaskTray.SetChecked(settings.tasktray);
    controls_.mnuDispTop.SetChecked(settings.disp_top);
    controls_.mnuScrollBar.SetChecked(settings.scroll_bar);
    controls_.mnuToolPanel.SetChecked(globals_.options.tool_panel);
    form_.SetTopMost(settings.disp_top);
    for (ListBox* list : {&controls_.lstDetail, &controls_.lstCsv, &controls_.lstDtList}) {
        list->SetHorizontalScroll(settings.scroll_bar);
    }
    ShowPlayCount();
    // A damaged file may name a pane that does not exist.
    if (settings.disp < 0 || settings.disp > 2) settings.disp = Settings().disp;
    Control* const options[] = {&controls_.optDispNothing, &controls_.optDispFiles,
                                &controls_.optDispTags};
    options[settings.disp]->SetChecked(true);
    Layout();
}

void DisplayOptions::ShowPlayCount() {
    controls_.mnuRepeat.SetText("再生回数変更(&N)：現在値 " +
                                std::to_string(globals_.settings.play_count) + " 回...");
}

void DisplayOptions::Layout() {
    const int disp = globals_.settings.disp;
    const bool tool_panel = globals_.options.tool_panel;
    controls_.lstCsv.SetVisible(disp == 1);
    controls_.lstDetail.SetVisible(disp == 2);
    controls_.splTop.SetVisible(disp != 0);
    for (Control* control :
         {&controls_.txtPlace, &controls_.chkToolBar, &controls_.chkMenuBar,
          &controls_.chkAddressBar, &controls_.chkStatusBar, &controls_.chkFullScreen}) {
        control->SetVisible(tool_panel);
    }

    Place pane = controls_.lstDetail.GetPlace();
    Place list = controls_.lstDtList.GetPlace();
    Place splitter = controls_.splTop.GetPlace();
    const Control& below = tool_panel ? controls_.txtPlace : controls_.txtUrl;
    const int bottom = below.GetPlace().top - kGap;
    const int max_height = bottom - pane.top - splitter.height - kMinPane;
    splitter.top = pane.top + std::clamp(pane.height, kMinPane, std::max(kMinPane, max_height));
    pane.height = splitter.top - pane.top;
    list.top = disp == 0 ? pane.top : splitter.top + splitter.height;
    list.height = bottom - list.top;
    controls_.splTop.SetPlace(splitter);
    controls_.lstDetail.SetPlace(pane);
    controls_.lstCsv.SetPlace(pane);
    controls_.lstDtList.SetPlace(list);
}

void DisplayOptions::PlaceWindow() {
    const Settings& settings = globals_.settings;
    form_.SetPlace({settings.form_left, settings.form_top, settings.form_right - settings.form_left,
                    settings.form_bottom - settings.form_top});
    Place pane = controls_.lstDetail.GetPlace();
    pane.height = settings.top_height / kTwipsPerPixel;
    controls_.lstDetail.SetPlace(pane);
    controls_.lstCsv.SetPlace(pane);
}

void DisplayOptions::KeepPlace() {
    Settings& settings = globals_.settings;
    const Place place = form_.GetPlace();
    settings.form_left = place.left;
    settings.form_top = place.top;
    settings.form_right = place.left + place.width;
    settings.form_bottom = place.top + place.height;
    settings.top_height = controls_.lstDetail.GetPlace().height * kTwipsPerPixel;
}

void DisplayOptions::optDisp_Click(int index) {
    globals_.settings.disp = index;
    Layout();
}

void DisplayOptions::splTop_Change() {
    Place pane = controls_.lstDetail.GetPlace();
    pane.height = controls_.splTop.GetPlace().top - pane.top;
    controls_.lstDetail.SetPlace(pane);
    Layout();
}

}  // namespace tamrin
