#pragma once

#include <set>

#include "platform/process.h"

namespace tamrin::test {

// A machine that starts no programs.
struct NoProcesses : Processes {
    std::unique_ptr<Process> Start(const std::string&, const std::vector<std::string>&) override {
        return nullptr;
    }
    std::string FindExecutable(const std::string&) const override { return ""; }
    std::string MakeTemporaryFolder() override { return ""; }
    void RemoveTemporaryFolder(const std::string&) override {}
    bool HasDisplay() const override { return false; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string&) const override { return ""; }
    std::string OwnExecutable() const override { return own; }
    bool IsRunning(const std::string& path) const override { return running.contains(path); }
    void AllowRunning(const std::string& path) override { runnable.insert(path); }
    void RaisePriority() override { raised = true; }

    bool raised = false;
    std::string own = "C:\\tamrin\\tamrin.exe";
    std::set<std::string> running, runnable;
};

}  // namespace tamrin::test
