#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/process.h"

namespace tamrin {

class WindowsProcesses : public Processes {
public:
    // The program and all that it starts belong to a job that ends with the answer, or with this
    // process, however that ends.
    std::unique_ptr<Process> Start(const std::string& executable,
                                   const std::vector<std::string>& arguments) override;
    bool Launch(const std::string& executable, const std::vector<std::string>& arguments) override;

    // Looks along PATH, then among the registered applications, then where browsers are installed.
    // A name with a folder stands for itself. ".exe" may be left out.
    std::string FindExecutable(const std::string& name) const override;

    // In the user's own folder for temporary files.
    std::string MakeTemporaryFolder() override;
    void RemoveTemporaryFolder(const std::string& folder) override;

    bool HasDisplay() const override { return true; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string& name) const override;
    std::string OwnExecutable() const override;
    bool IsRunning(const std::string& executable) const override;
    void RaisePriority() override;
};

}  // namespace tamrin
