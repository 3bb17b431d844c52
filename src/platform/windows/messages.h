#pragma once

namespace tamrin {

// Handles every message in this thread's queue and returns without waiting for more: first the
// shortcuts of the form that has the keyboard, then Tab and the other keys of a dialog, then the
// window itself. A request to end the thread stays in the queue.
void HandleMessages();

}  // namespace tamrin
