#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/browser.h"

namespace tamrin {

// What became of one record.
enum class RecordOutcome {
    kDone,
    kComment,  // a comment, nothing was done
    kNotBusy,  // keys for a busy browser, which was not busy
    kSkipped,  // the user skipped its wait, and with it the action
    kNotFound,
    kInvalid,     // its input data cannot be applied to the element
    kNotSent,     // its keys, or not all of them: the window in front does not take them
    kStopped,     // the run was stopped, or lost its browser, before it was done
    kPageFailed,  // the page that it opens could not be opened
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

// The story of a run, in order. The player calls these and does nothing else to show how it is
// getting on.
class RunEvents {
public:
    virtual ~RunEvents() = default;

    virtual void RunBegan() = 0;

    // The browser of this run has been started; the listener keeps it until the next run.
    virtual void BrowserOpened(std::shared_ptr<Browser> browser) = 0;

    // A record is about to be carried out, or tried again.
    virtual void RecordBegan(int row) = 0;

    virtual void RecordDone(const RecordReport& report) = 0;

    // The run is over, and the user has been told why. Not called when there was no record at all.
    virtual void RunEnded(RunEnd end) = 0;
};

}  // namespace tamrin
