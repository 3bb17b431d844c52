#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tamrin {

// A process that this program has started. Dropping the object ends it, with all processes that it
// has started itself.
class Process {
public:
    virtual ~Process() = default;

    // Whether it still runs.
    virtual bool Running() = 0;

    // Ends it at once. Harmless when it has ended.
    virtual void Kill() = 0;
};

class Processes {
public:
    virtual ~Processes() = default;

    // Starts an executable without a shell and discards its output. Null when it cannot be started.
    virtual std::unique_ptr<Process> Start(const std::string& executable,
                                           const std::vector<std::string>& arguments) = 0;

    // Starts an executable in the same way; it goes on when this program ends. False when it cannot
    // be started.
    virtual bool Launch(const std::string& /*executable*/,
                        const std::vector<std::string>& /*arguments*/) {
        return false;
    }

    // The full path of the first executable of that name on the system's search path or, on
    // Windows, among the registered applications; empty when there is none.
    virtual std::string FindExecutable(const std::string& name) const = 0;

    // Makes a new empty folder that only this user can enter, or answers "" on failure.
    virtual std::string MakeTemporaryFolder() = 0;

    // Deletes a folder made by MakeTemporaryFolder with all that is in it.
    virtual void RemoveTemporaryFolder(const std::string& folder) = 0;

    // Whether a window can be shown (a display exists).
    virtual bool HasDisplay() const = 0;

    // Whether the program runs with the rights of the system's administrator under which browsers
    // refuse their own sandbox (root on Linux; never on Windows).
    virtual bool IsRoot() const = 0;

    // The value of an environment variable, "" when there is none.
    virtual std::string Environment(const std::string& name) const = 0;

    // The full path of this program's own file, "" when it is not known.
    virtual std::string OwnExecutable() const { return ""; }

    // Whether a process runs this program file, so that it must not be replaced. On Windows also
    // while another process prevents writing to it.
    virtual bool IsRunning(const std::string& /*executable*/) const { return false; }

    // Makes a file executable for everybody who may read it, where the system has such a right.
    virtual void AllowRunning(const std::string& /*path*/) {}

    // Raises this process to high priority (HIGH_PRIORITY_CLASS, 128, on Windows); where the system
    // does not allow it, nothing happens.
    virtual void RaisePriority() = 0;
};

}  // namespace tamrin
