#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tamrin {

// How a program is to be started.
struct ProgramStart {
    std::string executable;
    std::vector<std::string> arguments{};
    // Goes on when this program ends, and then keeps its pipe open by itself.
    bool outlives = false;
    // Reads messages of this program from its file 3 and writes messages to its file 4.
    bool piped = false;
    // The program's own folder, "" for none. One of MakeTemporaryFolder stays in use as long as the
    // program runs. Where the system allows it, the program puts its temporary files there.
    std::string folder{};
};

// This program's ends of the pipe to another: the system's numbers of open files. Who takes them
// closes them.
struct PipeEnds {
    std::intptr_t from = -1;
    std::intptr_t to = -1;
};

// A process that this program has started. Dropping the object ends it, with all processes that it
// has started itself, unless it outlives this program.
class Process {
public:
    virtual ~Process() = default;

    // Whether it still runs.
    virtual bool Running() = 0;

    // Ends it at once. Harmless when it has ended.
    virtual void Kill() = 0;

    // The pipe to a program that was started with one. To be taken once.
    virtual PipeEnds TakePipe() { return {}; }
};

class Processes {
public:
    virtual ~Processes() = default;

    // Starts an executable without a shell and discards its output. Null when it cannot be started.
    virtual std::unique_ptr<Process> Start(const ProgramStart& start) = 0;

    // The full path of the first executable of that name on the system's search path or, on
    // Windows, among the registered applications; empty when there is none.
    virtual std::string FindExecutable(const std::string& name) const = 0;

    // Makes a new folder that only this user can enter, or answers "" on failure. First deletes
    // those of programs that have ended without deleting theirs.
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
