#pragma once

#include <memory>
#include <string>

namespace tamrin {

// A websocket of text messages to a browser on this computer (127.0.0.1). Nothing here blocks for
// longer than it is told, and nothing happens outside Wait.
class DevToolsSocket {
public:
    enum class State { kConnecting, kOpen, kClosed };

    // Begins to connect; Wait until the state is no longer kConnecting. No Origin header is sent:
    // the browser refuses those of other origins, and a program needs none.
    DevToolsSocket(unsigned short port, const std::string& path);
    ~DevToolsSocket();

    DevToolsSocket(const DevToolsSocket&) = delete;
    DevToolsSocket& operator=(const DevToolsSocket&) = delete;

    State state() const;

    // Sends a message after those that were sent before it. Lost when the socket is closed.
    void Send(std::string message);

    // Sends and receives what it can, and waits up to `milliseconds` for something to happen (0:
    // not at all).
    void Wait(int milliseconds);

    // Takes the next message that has arrived; false when there is none.
    bool Next(std::string& message);

private:
    class Stream;
    std::unique_ptr<Stream> stream_;
};

}  // namespace tamrin
