#include "scenario/scenario_file.h"

#include "platform/clock.h"
#include "platform/files.h"

namespace tamrin {
namespace {

constexpr int kDeleteAttempts = 500;
constexpr int kDeletePauseMs = 10;

}  // namespace

std::vector<std::string> ListScenarioFiles(const Files& files, const std::string& folder) {
    std::vector<std::string> names = files.List(folder, ".csv");
    for (std::string& name : files.List(folder, ".tamrin")) names.push_back(std::move(name));
    return names;
}

bool DeleteScenarioFile(Files& files, Clock& clock, const std::string& path) {
    for (int attempt = 0; attempt < kDeleteAttempts; ++attempt) {
        if (files.IsFile(path)) files.Delete(path);
        if (!files.IsFile(path)) return true;
        clock.Sleep(kDeletePauseMs);
        clock.DoEvents();
    }
    return false;
}

}  // namespace tamrin
