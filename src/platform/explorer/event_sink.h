#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>
#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/variant.h"

namespace tamrin {

// The arguments of an event, in the order of its declaration.
class EventArguments {
public:
    explicit EventArguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

    // Empty when the event has fewer. A reference is replaced by what it refers to.
    Variant At(std::size_t index) const;

private:
    const DISPPARAMS& parameters_;
};

// A handler for the event of that number in the event interface. `handle` runs inside a call of the
// browser, which waits for it: it must not run code of the program's user interface.
struct EventHandler {
    DISPID event;
    std::function<void(const EventArguments&)> handle;
};

// A subscription to an event interface of an object; it ends with the connection. Events that come
// later do nothing. Every event is answered with true, so that the browser does its own action.
class EventConnection {
public:
    // Subscribes to the events of `interface_id`. Null when `source` does not have them.
    static std::unique_ptr<EventConnection> Make(ComCalls& calls, IUnknown* source,
                                                 REFIID interface_id,
                                                 std::vector<EventHandler> handlers);
    ~EventConnection();
    EventConnection(const EventConnection&) = delete;
    EventConnection& operator=(const EventConnection&) = delete;

private:
    class Sink;
    EventConnection(ComCalls& calls, ComPtr<IConnectionPoint> point, DWORD cookie,
                    ComPtr<Sink> sink);

    ComCalls& calls_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_;
    ComPtr<Sink> sink_;
};

}  // namespace tamrin
