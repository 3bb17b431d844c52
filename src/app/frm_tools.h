#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/element_facts.h"
#include "app/platform.h"
#include "app/record_commands.h"
#include "state/globals.h"

namespace tamrin {

// The tag analyzer: a window in front of all others that tells of the element under the mouse
// pointer in any browser window that can be recorded, four times a second.
//
// While the pointer stays on one element a tick takes one round trip to the browser, and one more
// for each frame that leads there; where it stands in no page, one for each window. During a run
// the browser is left in peace.
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

    // Whether what is shown is to stay.
    bool Frozen() const;
    // Looks for the pointer: first where it was, then in the attached window, then in the others.
    bool Look();
    bool LookIn(const std::shared_ptr<Browser>& browser);
    // Says for two seconds what was done.
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
