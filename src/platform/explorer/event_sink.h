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

// The arguments of an event, in the order in which its declaration names them.
class EventArguments {
public:
    explicit EventArguments(const DISPPARAMS& parameters) : parameters_(parameters) {}

    // Empty where the event brings fewer. What is given by reference is followed.
    Variant At(std::size_t index) const;

private:
    const DISPPARAMS& parameters_;
};

// An event that is listened to, by its number in the event interface. `handle` runs inside the
// browser's call, which waits for it; it must not call into the program.
struct EventHandler {
    DISPID event;
    std::function<void(const EventArguments&)> handle;
};

// Listens to an event interface of an object for as long as it lives. Events that come afterwards
// do nothing. To the browser it answers true, so that it goes on with its own action.
class EventConnection {
public:
    // `source` is asked for the events of `interface_id`. Null when it has none.
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
