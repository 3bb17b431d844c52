#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/browser.h"
#include "platform/clock.h"
#include "player/click.h"
#include "player/player_host.h"
#include "player/run_events.h"
#include "scenario/record.h"
#include "state/globals.h"

namespace tamrin {

// What the run does after a record: go on with the next one, try this one again, or end.
enum class NextStep { kGoOn, kAgain, kEndRun };

struct StepResult {
    NextStep next = NextStep::kGoOn;
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

    // Carries out the record, which stands in `row` of the list. `ready_state` is IEState's answer;
    // a record that addresses an element needs 4 and is to be tried again until then.
    StepResult ExecRecord(const Record& record, int row, int ready_state);

private:
    // What a record asks to be done to an element.
    struct Act {
        const Record& record;
        std::string indt;  // unescaped, reserved texts expanded
        int wait_ms;       // the user's wait before the action
        bool clicks;       // the action is one of the clicks
        bool real_click;
    };

    std::string Expand(std::string_view item, bool as_keys);
    Act ReadAct(const Record& record);
    StepResult SendRecordKeys(const Record& record, int row);
    StepResult Navigate(const std::string& address);
    StepResult ExecOnElement(const Record& record, int row);
    // Waits as the record says. Answers when that is the end of it: the run was stopped, the wait
    // skipped, or the link is a script, which is run.
    std::optional<StepResult> WaitBeforeLink(const Act& act);
    StepResult FollowLink(const Element& link, const Act& act);
    StepResult ActOn(const Element& element, const Act& act);
    StepResult SetValue(const Element& element, const Act& act);
    StepResult SetChecked(const Element& element, const Act& act);
    StepResult SetSelected(const Element& element, const Act& act);
    // A record that `fires` runs the page's click handlers even when the user skips its click. The
    // click runs them by itself, so they run once, as for a person's click.
    StepResult Click(const Element& element, const Act& act, bool fires);
    StepResult NotFound(const Act& act, int row);
    StepResult Invalid(const Element& element, const Act& act);

    Globals& globals_;
    Clock& clock_;
    Input& input_;
    PlayerHost& host_;
    std::shared_ptr<Browser> browser_;
    Clicker clicker_;
};

}  // namespace tamrin
