#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/chromium/endpoint.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

// How a browser is to be started.
struct BrowserStart {
    std::string executable;                // a path or a name; "" to look for one
    int limit_ms = 30000;                  // how long it may take to open its port
    std::function<bool()> stop_requested;  // null: never
};

// A running browser with a profile of its own, which nobody else uses. Dropping it ends the browser
// and deletes the profile.
class BrowserProcess {
public:
    // Starts it and waits until its DevTools port is open. On failure null, and `why` says in
    // Japanese what to do.
    static std::unique_ptr<BrowserProcess> Start(Processes& processes, Files& files, Clock& clock,
                                                 const BrowserStart& start, std::string& why);
    ~BrowserProcess();

    BrowserProcess(const BrowserProcess&) = delete;
    BrowserProcess& operator=(const BrowserProcess&) = delete;

    // Where its DevTools answer.
    const Endpoint& endpoint() const { return endpoint_; }

private:
    explicit BrowserProcess(Processes& processes) : processes_(processes) {}

    bool WaitForPort(const Files& files, Clock& clock, const BrowserStart& start, std::string& why);
    bool ReadPort(const Files& files);

    Processes& processes_;
    std::string profile_;
    std::unique_ptr<Process> process_;
    Endpoint endpoint_;
};

}  // namespace tamrin
