#pragma once

#include "platform/clock.h"
#include "platform/explorer/com_calls.h"
#include "platform/explorer/explorer_windows.h"

namespace tamrin {

// Whether there is an Internet Explorer here that shows pages: one is made, unseen, opens an empty
// page and quits. Where it does not answer with a document, one of middle integrity is tried, and
// from then on made by all who have these sources. Handles events while it waits, for at most five
// seconds each.
bool ExplorerAnswers(ComCalls& calls, const ExplorerSources& sources, Clock& clock);

}  // namespace tamrin
