#pragma once

#include "conformance/suite.h"
#include "platform/chromium/launcher.h"

namespace tamrin::test {

// What Chromium alone does, in the window that all tests of the program share.
class ChromiumTest : public conformance::Suite {
protected:
    ChromiumLauncher& launcher() { return dynamic_cast<ChromiumLauncher&>(back_end().launcher()); }
};

}  // namespace tamrin::test
