#pragma once

#include <windows.h>

#include "platform/browser.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// A browser window of this back end, however it is reached.
class ExplorerWindow : public Browser {
public:
    // Tells the subscribers of the window and its pages what has happened since the last time.
    virtual void DeliverEvents() = 0;

    // Whether this is the browser of an object.
    virtual bool Is(IUnknown* browser) const = 0;

    // The content window by which this was found, null for one that the shell lists.
    virtual HWND content() const = 0;
};

}  // namespace tamrin
