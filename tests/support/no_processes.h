#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/process.h"

namespace tamrin::test {

// A machine that starts no programs.
class NoProcesses : public Processes {
public:
    std::unique_ptr<Process> Start(const std::string&, const std::vector<std::string>&) override {
        return nullptr;
    }
    std::string FindExecutable(const std::string&) const override { return ""; }
    std::string MakeTemporaryFolder() override { return ""; }
    void RemoveTemporaryFolder(const std::string&) override {}
    bool HasDisplay() const override { return false; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string&) const override { return ""; }
    void RaisePriority() override { raised = true; }
    bool raised = false;
};

}  // namespace tamrin::test
