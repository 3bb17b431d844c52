#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/posix/descriptor.h"
#include "platform/process.h"

namespace tamrin {

class PosixProcesses : public Processes {
public:
    // The program gets a process group of its own. On Linux it also ends when this process ends
    // without dropping the answer.
    std::unique_ptr<Process> Start(const ProgramStart& start) override;

    // Searches PATH. A name with a slash in it is a path already.
    std::string FindExecutable(const std::string& name) const override;

    // In TMPDIR, else in /tmp. A lock on the folder, which the program that uses it shares, tells
    // that it is in use.
    std::string MakeTemporaryFolder() override;
    void RemoveTemporaryFolder(const std::string& folder) override;

    bool HasDisplay() const override;
    bool IsRoot() const override;
    std::string Environment(const std::string& name) const override;
    std::string OwnExecutable() const override;
    bool IsRunning(const std::string& executable) const override;
    void AllowRunning(const std::string& path) override;
    void RaisePriority() override;

    // Ctrl+C, or another request to end (SIGTERM, SIGHUP). From CatchSignals on, the first one is
    // only remembered, so that the program can stop in good order; a second one ends it at once. A
    // pipe that nobody reads and a full quota fail the write, and do not end the program.
    static void CatchSignals();
    static bool Interrupted();

private:
    std::map<std::string, Descriptor> locks_;  // of the temporary folders
};

}  // namespace tamrin
