#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/process.h"
#include "platform/windows/handle.h"

namespace tamrin {

class WindowsProcesses : public Processes {
public:
    // The program and all that it starts belong to a job that ends with the answer, or with this
    // process, however that ends, unless it outlives this process.
    std::unique_ptr<Process> Start(const ProgramStart& start) override;

    // Looks along PATH, then among the registered applications, then where browsers are installed.
    // A name with a folder stands for itself. ".exe" may be left out.
    std::string FindExecutable(const std::string& name) const override;

    // In the user's own folder for temporary files. An open handle of the folder, which the program
    // that uses it shares, tells that it is in use.
    std::string MakeTemporaryFolder() override;
    void RemoveTemporaryFolder(const std::string& folder) override;

    bool HasDisplay() const override { return true; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string& name) const override;
    std::string OwnExecutable() const override;
    bool IsRunning(const std::string& executable) const override;
    void RaisePriority() override;

private:
    std::map<std::string, OwnedHandle> locks_;  // of the temporary folders
};

}  // namespace tamrin
