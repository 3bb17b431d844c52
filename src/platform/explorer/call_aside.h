#pragma once

#include <windows.h>

#include <oaidl.h>

#include "platform/explorer/com_calls.h"

namespace tamrin {

// Calls a method that makes the page act, such as a click, on a thread of its own. The page's
// handlers may show a dialog box, and the call then returns only when somebody has answered it.
// When the call's limits end the wait (ComCalls::MustEnd), the answer is RPC_E_CALL_CANCELED, and
// thread and page go on alone. While this waits, the browser's events arrive and the program's
// windows are painted, as in any other call. What the method itself answers is lost.
HRESULT CallAside(const ComCalls& calls, IDispatch& object, DISPID method,
                  const DISPPARAMS& parameters);

}  // namespace tamrin
