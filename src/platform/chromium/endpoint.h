#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tamrin {

// Where a browser's DevTools answer: a port of this computer, and the path of the websocket.
struct Endpoint {
    unsigned short port = 0;
    std::string path{};  // "" when only the port is known

    bool operator==(const Endpoint&) const = default;
};

// What a browser writes into the file DevToolsActivePort of its profile when its port is open: the
// port, and the path on a line of its own. Nothing while it is not all written.
std::optional<Endpoint> ReadActivePort(std::string_view text);

// An address as users write it: "9222", "localhost:9222", "http://127.0.0.1:9222/", or the whole
// "ws://127.0.0.1:9222/devtools/browser/...". Nothing when it is none, or one of another computer:
// who can reach the port there rules that browser, so it is not for going over a net.
std::optional<Endpoint> ReadDebugAddress(std::string_view text);

}  // namespace tamrin
