#pragma once

namespace tamrin {

// Ctrl+C. From the first call on, the first interrupt is only remembered, so that the program can
// stop in good order; a second one ends the program at once.
void CatchInterrupt();

// Whether there was one.
bool Interrupted();

}  // namespace tamrin
