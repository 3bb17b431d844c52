#pragma once

#include "platform/posix/processes.h"

namespace tamrin::conformance {

// No window covers the work of who runs the tests, unless TAMRIN_SHOW_BROWSER asks for one.
class QuietProcesses : public PosixProcesses {
public:
    bool HasDisplay() const override {
        return !Environment("TAMRIN_SHOW_BROWSER").empty() && PosixProcesses::HasDisplay();
    }
};

}  // namespace tamrin::conformance
