#pragma once

#include <cstdint>
#include <string>

namespace tamrin {

// What became of one record.
enum class RecordOutcome {
    kDone,
    kComment,  // a comment, nothing was done
    kNotBusy,  // keys for a busy browser, which was not busy
    kSkipped,  // the user skipped its wait, and with it the action
    kNotFound,
    kInvalid,  // its input data cannot be applied to the element
    kNotSent,  // its keys, or not all of them: the window in front does not take them
    kStopped,  // the run was stopped, or lost its browser, before it was done
};

// One record that the run has left behind.
struct RecordReport {
    int row = 0;  // in the record list, from 0
    std::string act;
    RecordOutcome outcome = RecordOutcome::kDone;
    std::uint32_t milliseconds = 0;  // retries included
};

// How a run ended.
enum class RunEnd {
    kCompleted,      // at the list's end or at a "quit" record
    kNothingToPlay,  // no records, no "url" record, or one without an address
    kBadSizeBar,
    kNoBrowser,  // it could not be started
    kBrowserDied,
    kStopped,
    kTimedOut,  // ended by the watchdog: no page was completed for too long
};

}  // namespace tamrin
