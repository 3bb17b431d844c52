#pragma once

#include <memory>
#include <string>

#include "platform/chromium/endpoint.h"
#include "platform/process.h"

namespace tamrin {

// Carries text messages to a browser on this computer and back. Nothing here blocks for longer than
// it is told, and nothing happens outside Wait.
class DevToolsChannel {
public:
    enum class State { kConnecting, kOpen, kClosed };

    virtual ~DevToolsChannel() = default;

    virtual State state() const = 0;

    // Sends a message after those that were sent before it. Lost when the channel is closed.
    virtual void Send(std::string message) = 0;

    // Sends and receives what it can, and waits up to `milliseconds` for something to happen (0:
    // not at all).
    virtual void Wait(int milliseconds) = 0;

    // Takes the next message that has arrived; false when there is none.
    virtual bool Next(std::string& message) = 0;
};

// A websocket to a port of 127.0.0.1. It begins to connect: Wait until the state is no longer
// kConnecting. No Origin header is sent: the browser refuses those of other origins, and a program
// needs none.
std::unique_ptr<DevToolsChannel> ConnectSocket(const Endpoint& endpoint);

// The pipe to a browser that this program has started; nobody else can reach the browser. It is
// open until the browser ends. Dropping it tells the browser to end, unless that outlives the
// program.
std::unique_ptr<DevToolsChannel> OpenPipe(const PipeEnds& pipe);

}  // namespace tamrin
