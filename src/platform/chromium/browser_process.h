#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/chromium/devtools.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

// How a browser is to be started.
struct BrowserStart {
    std::string executable;                // a path or a name; "" to look for one
    int limit_ms = 30000;                  // how long it may take to answer
    std::function<bool()> stop_requested;  // null: never
    // The folder of a profile that is kept, made in an existing folder; "" for a temporary one.
    std::string profile{};
    bool outlives = false;  // goes on when this program ends
};

// A browser that the program has started, and that it alone can reach, through a pipe. Dropping the
// object ends it, if it does not outlive the program, and deletes a temporary profile.
//
// Where a pipe cannot be handed over, the environment's variable TAMRIN_DEBUGGING_PORT, set to
// anything, asks for a port in its place, which every user of the computer can reach.
class BrowserProcess {
public:
    // Starts it, connects to it and waits for its first answer. On failure null, and `why` says in
    // Japanese what to do.
    static std::unique_ptr<BrowserProcess> Start(Processes& processes, Files& files, Clock& clock,
                                                 const BrowserStart& start, DevTools& devtools,
                                                 std::string& why);
    // The connection is to be closed before: a browser that hears nothing any more ends by itself.
    ~BrowserProcess();

    BrowserProcess(const BrowserProcess&) = delete;
    BrowserProcess& operator=(const BrowserProcess&) = delete;

private:
    BrowserProcess(Processes& processes, Files& files, Clock& clock, BrowserStart start);

    bool MakeProfile(std::string& why);
    bool Launch(const std::string& executable, std::string& why);
    bool Connect(DevTools& devtools, std::string& why);
    bool ReadPort(DevTools& devtools);
    void End();

    Processes& processes_;
    Files& files_;
    Clock& clock_;
    const BrowserStart start_;
    const bool temporary_;
    const bool by_port_;
    std::string profile_;
    std::unique_ptr<Process> process_;
    bool connected_ = false;
};

}  // namespace tamrin
