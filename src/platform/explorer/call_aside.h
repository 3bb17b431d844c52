#pragma once

#include <windows.h>

#include <oaidl.h>

#include "platform/explorer/com_calls.h"

namespace tamrin {

// Calls a method that makes the page act, such as a click. Its handlers may show a dialog box, and
// then the call comes back when somebody has answered it; so it is made by a thread of its own, and
// left to it where the limits of calls say so: then the answer is RPC_E_CALL_CANCELED and the page
// goes on. Meanwhile the browser's events arrive and the program's windows are painted, as in any
// other call. The answer of the method itself is lost.
HRESULT CallAside(const ComCalls& calls, IDispatch& object, DISPID method,
                  const DISPPARAMS& parameters);

}  // namespace tamrin
