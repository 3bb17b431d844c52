#pragma once

#include <memory>
#include <string>

namespace tamrin {

// Asks a browser of which only the port is known for the path of its websocket, over HTTP. Nothing
// blocks: Poll goes on with it.
class VersionRequest {
public:
    explicit VersionRequest(unsigned short port);
    ~VersionRequest();

    VersionRequest(const VersionRequest&) = delete;
    VersionRequest& operator=(const VersionRequest&) = delete;

    // True when it has ended.
    bool Poll();
    // The path, "" when nobody answers there or what answers is no browser.
    const std::string& path() const;

private:
    class Exchange;
    std::unique_ptr<Exchange> exchange_;
};

}  // namespace tamrin
