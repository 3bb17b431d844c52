#include "app/tool_panel.h"

#include <string>
#include <utility>

namespace tamrin {

ToolPanel::ToolPanel(const Globals& globals, MainControls& controls,
                     std::function<std::shared_ptr<Browser>()> browser)
    : globals_(globals), controls_(controls), browser_(std::move(browser)) {
    for (Control* bar : {&controls_.chkToolBar, &controls_.chkMenuBar, &controls_.chkAddressBar,
                         &controls_.chkStatusBar}) {
        bar->onClick = [this] { SwitchBars(); };
    }
}

void ToolPanel::Refresh() {
    if (!globals_.options.tool_panel) return;
    const std::shared_ptr<Browser> browser = browser_();
    const WindowState state = browser ? browser->State() : WindowState();
    const WindowPlace& place = state.place;
    refreshing_ = true;
    controls_.txtPlace.SetText(
        browser ? std::to_string(place.left) + ", " + std::to_string(place.top) + "  " +
                      std::to_string(place.width) + "×" + std::to_string(place.height)
                : "");
    controls_.chkToolBar.SetChecked(state.bars.tool);
    controls_.chkMenuBar.SetChecked(state.bars.menu);
    controls_.chkAddressBar.SetChecked(state.bars.address);
    controls_.chkStatusBar.SetChecked(state.bars.status);
    controls_.chkFullScreen.SetChecked(state.full_screen);
    refreshing_ = false;
}

void ToolPanel::SwitchBars() {
    if (refreshing_) return;
    if (const std::shared_ptr<Browser> browser = browser_()) {
        browser->SetBars({controls_.chkToolBar.Checked(), controls_.chkMenuBar.Checked(),
                          controls_.chkAddressBar.Checked(), controls_.chkStatusBar.Checked()});
    }
    Refresh();  // a browser may have kept its bars
}

}  // namespace tamrin
