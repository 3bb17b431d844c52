#pragma once

#include <iosfwd>

#include "app/frm_ie_auto.h"
#include "player/run_events.h"

namespace tamrin {

// How the program ends. 128 and above are the shell's codes for a signal.
enum ExitCode : int {
    kPlayed = 0,
    kNothing = 1,        // nothing to play, or a command line that cannot be read
    kUnreadable = 2,     // the scenario could not be read
    kNotStarted = 3,     // the browser could not be started
    kDied = 4,           // the browser died or its page crashed
    kRecordFailed = 5,   // a record found no element, or its data could not be applied
    kPageFailed = 6,     // a page could not be opened
    kWatchdog = 7,       // no page was completed for 30 seconds
    kNotSaved = 8,       // a recording, a player or a picture could not be saved
    kInterrupted = 130,  // stopped by Ctrl+C
};

// Works out the exit code from the records of a run and from its end.
class RunResult {
public:
    void Add(const RecordReport& report);

    ExitCode Code(StartUp start, const frmIeAuto& window) const;

private:
    bool record_failed_ = false;
};

// Prints the outcome of each record in a line.
class ConsoleReport {
public:
    explicit ConsoleReport(std::ostream& output) : output_(output) {}

    void Record(const RecordReport& report);

private:
    std::ostream& output_;
    bool any_ = false;
};

}  // namespace tamrin
