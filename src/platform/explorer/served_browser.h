#pragma once

#include <windows.h>

#include <exdisp.h>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// The browser that shows a page, given the page's window object, which serves it to programs also
// where it refuses the page to scripts (SID_SWebBrowserApp). Null where there is none.
ComPtr<IWebBrowser2> BrowserServedBy(ComCalls& calls, IDispatch* window);

}  // namespace tamrin
