#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "app/console_report.h"
#include "app/frm_ie_auto.h"
#include "app/platform.h"

namespace tamrin {

// Opens a browser at an address, records until its window is closed or `stop_requested` answers
// true, and saves the records as the scenario file `file`. While it records, and when they cannot
// be saved, they stand in a file of that name with ".recovery" behind it. Says on `output` when it
// begins and what it has saved.
//
// kPlayed when saved, kNothing when nothing was recorded (an older file stands then), kNotStarted
// without a browser, kInterrupted when the stop came before it, kNotSaved when the file could not
// be written.
ExitCode RecordToFile(frmIeAuto& window, const Platform& platform, const std::string& file,
                      const std::string& address, const std::function<bool()>& stop_requested,
                      std::ostream& output);

}  // namespace tamrin
