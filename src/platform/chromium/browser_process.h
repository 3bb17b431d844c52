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
    // The folder of a profile that is kept, made in an existing folder; "" for a temporary one.
    std::string profile{};
};

// A browser that the program has started, with DevTools on a port of the browser's own choice. With
// a temporary profile it is the program's: dropping the object ends it and deletes the profile.
// With a kept one it is the user's and lives on by itself.
class BrowserProcess {
public:
    // Starts it and waits until its port is open. On failure null, and `why` says in Japanese what
    // to do.
    static std::unique_ptr<BrowserProcess> Start(Processes& processes, Files& files, Clock& clock,
                                                 const BrowserStart& start, std::string& why);
    ~BrowserProcess();

    BrowserProcess(const BrowserProcess&) = delete;
    BrowserProcess& operator=(const BrowserProcess&) = delete;

    const Endpoint& endpoint() const { return endpoint_; }

private:
    BrowserProcess(Processes& processes, Files& files, Clock& clock)
        : processes_(processes), files_(files), clock_(clock) {}

    bool StartOwn(const std::string& executable, std::string& why);
    bool StartKept(const std::string& executable, std::string& why);
    bool WaitForPort(const BrowserStart& start, std::string& why);
    bool ReadPort();

    Processes& processes_;
    Files& files_;
    Clock& clock_;
    std::string profile_;
    bool temporary_ = false;
    std::unique_ptr<Process> process_;  // null for the user's
    Endpoint endpoint_;
};

}  // namespace tamrin
