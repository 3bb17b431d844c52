#pragma once

#include <string>
#include <string_view>

#include "platform/browser.h"
#include "platform/clock.h"
#include "player/click.h"
#include "player/player_host.h"
#include "player/run_report.h"
#include "state/globals.h"

namespace tamrin {

// What executing a record tells the step loop: kAgain to run it again, kEndRun to end the run, any
// other value to go on.
enum StepValue : int { kInvalidData = -2, kEndRun = -1, kGoOn = 0, kFollowed = 1, kAgain = 10 };

struct StepResult {
    int value = kGoOn;
    RecordOutcome outcome = RecordOutcome::kDone;
};

// Carries out records against one browser.
class RecordExecutor {
public:
    RecordExecutor(Globals& globals, Clock& clock, Input& input, PlayerHost& host,
                   std::shared_ptr<Browser> browser)
        : globals_(globals),
          clock_(clock),
          input_(input),
          host_(host),
          browser_(std::move(browser)),
          clicker_(globals, clock, input, host) {}

    // Carries out the record in `row` of the list. `ready_state` is IEState's answer; records that
    // address an element want 4 and are answered kAgain until then.
    StepResult ExecRecord(int row, int ready_state);

private:
    // One record's fields, taken from its line before anything can change the list.
    struct Fields {
        int row = 0;
        std::string act;
        std::string id;
        std::string type;
        std::string indt;         // unescaped, reserved texts expanded
        std::string radio_value;  // of the button of a group, "" where none is named
        int wait_ms = 0;          // the user's wait before the action
        bool clicks = false;      // the action is one of the clicks
        bool real_click = false;
    };

    std::string Expand(std::string_view field, bool as_keys);
    Fields ReadFields(int row);
    StepResult SendRecordKeys(int row);
    StepResult Navigate(const std::string& address);
    StepResult ExecOnElement(Fields& record);
    Element Find(const Fields& record);
    // Nothing when the link could not be followed.
    std::optional<StepResult> FollowLink(const Fields& record);
    StepResult ActOn(const Element& element, const Fields& record);
    StepResult SetValue(const Element& element, const Fields& record);
    StepResult SetChecked(const Element& element, const Fields& record);
    StepResult SetSelected(const Element& element, const Fields& record);
    StepResult Click(const Element& element, const Fields& record);
    StepResult NotFound(const Fields& record);
    StepResult Invalid(const Element& element, const Fields& record);

    Globals& globals_;
    Clock& clock_;
    Input& input_;
    PlayerHost& host_;
    std::shared_ptr<Browser> browser_;
    Clicker clicker_;
};

}  // namespace tamrin
