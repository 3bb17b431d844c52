#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/process.h"

namespace tamrin {

// Where a browser's DevTools answer: a port of this computer, and the path of the websocket. Below
// it, the ways to find that out.
struct Endpoint {
    unsigned short port = 0;
    std::string path{};  // "" when only the port is known

    bool operator==(const Endpoint&) const = default;
};

// The file in its profile into which a browser writes its endpoint when its port is open.
inline constexpr std::string_view kPortFile = "DevToolsActivePort";

// Reads that file: the port, and the path on a line of its own. Nothing while it is incomplete.
std::optional<Endpoint> ReadActivePort(std::string_view text);

// An address as users write it: "9222", "localhost:9222", "http://127.0.0.1:9222/", or the whole
// "ws://127.0.0.1:9222/devtools/browser/...". Nothing when it is not one, or is one of another
// computer: whoever reaches the port controls the browser, so it must not go over a network.
std::optional<Endpoint> ReadDebugAddress(std::string_view text);

// The folders in which browsers of this family keep their user's profiles by default, on Windows
// and on Linux, whether they exist or not. `separator` is the system's.
std::vector<std::string> ProfileFolders(const Processes& processes, char separator);

// Asks a browser whose port alone is known for the path of its websocket, over HTTP. Nothing
// blocks: Poll continues it.
class VersionRequest {
public:
    explicit VersionRequest(unsigned short port);
    ~VersionRequest();

    VersionRequest(const VersionRequest&) = delete;
    VersionRequest& operator=(const VersionRequest&) = delete;

    // True when it has ended.
    bool Poll();
    // The path; "" when nothing answers there, or something that is not a browser.
    const std::string& path() const;

private:
    class Exchange;
    std::unique_ptr<Exchange> exchange_;
};

}  // namespace tamrin
