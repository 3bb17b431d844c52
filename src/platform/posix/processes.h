#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/process.h"

namespace tamrin {

class PosixProcesses : public Processes {
public:
    // The program gets a process group of its own. Where the system can (Linux), it is also ended
    // when this process ends without dropping the answer.
    std::unique_ptr<Process> Start(const std::string& executable,
                                   const std::vector<std::string>& arguments) override;
    bool Launch(const std::string& executable, const std::vector<std::string>& arguments) override;

    // Looks along PATH. A name with a slash in it stands for itself.
    std::string FindExecutable(const std::string& name) const override;

    // In TMPDIR, else in /tmp.
    std::string MakeTemporaryFolder() override;
    void RemoveTemporaryFolder(const std::string& folder) override;

    bool HasDisplay() const override;
    bool IsRoot() const override;
    std::string Environment(const std::string& name) const override;
    std::string OwnExecutable() const override;
    bool IsRunning(const std::string& executable) const override;
    void AllowRunning(const std::string& path) override;
    void RaisePriority() override;
};

}  // namespace tamrin
