#pragma once

#include <memory>

#include "platform/windows/control.h"

namespace tamrin {

// Makes the child window of one line of a form's table, with the number `id`, and its control.
// Timers have no window: they are not made here.
std::unique_ptr<WindowControl> MakeControl(WindowForm& form, const ControlSpec& spec, int id,
                                           bool first_of_group);

}  // namespace tamrin
