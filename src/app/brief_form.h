#pragma once

#include "platform/window_system.h"

namespace tamrin {

// Shows a form in the middle of another one and in front of everything, until the interval of its
// timer "Timer1" has passed. It takes no input.
void ShowBriefly(Form& form, const Form& over);

}  // namespace tamrin
