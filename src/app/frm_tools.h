#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/platform.h"
#include "app/record_commands.h"
#include "app/tag_analysis.h"
#include "state/globals.h"

namespace tamrin {

// The tag analyzer: a window in front of all others that shows the element under the mouse pointer
// in any browser window that can be recorded. It looks four times a second.
//
// While the pointer stays on one element a tick takes one round trip to the browser, and one more
// for each frame on the way to the element. While the pointer is on no page, a tick takes one round
// trip for each window. During a run the browser is not asked.
class frmTools {
public:
    // Opens beside the main window.
    frmTools(const Globals& globals, const Platform& platform, const Form& main,
             RecordCommands& recording);

    // Brings the keyboard to the window.
    void Activate();
    bool closed() const { return closed_; }
    void Close() { form_->Close(); }

private:
    void BindEvents();
    void StandBeside(const Form& main);
    void Timer1_Timer();
    void cmdCopy_Click(int row);
    void cmdRecord_Click();
    void cmdAdd_Click();

    // Whether the user wants the shown element to stay.
    bool Frozen() const;
    // Shows the element under the pointer; false when the pointer is on no page. Looks first in the
    // window of the last time, then in the attached one, then in the others.
    bool Look();
    bool LookIn(const std::shared_ptr<Browser>& browser);
    // Shows for two seconds what was done.
    void Notice(const char* text);
    void ShowFacts(ElementFacts facts);
    // What the record of the shown element finds in the page, in words.
    std::string FindingOf(const Element& recorded) const;

    const Globals& globals_;
    Platform platform_;
    RecordCommands& recording_;
    std::unique_ptr<Form> form_;
    Control& lblState;
    Control& chkFreeze;
    Control& cmdRecord;
    Control& cmdAdd;
    Control& txtRecord;
    Control& lblFinding;
    std::shared_ptr<Browser> browser_;  // in which the element is shown
    std::vector<Element> path_;         // to the shown element
    ElementFacts facts_;
    std::string record_;
    std::shared_ptr<Browser> record_browser_;
    int notice_ticks_ = 0;
    bool closed_ = false;
};

}  // namespace tamrin
