#include "scenario/scenario_file.h"

#include "platform/clock.h"
#include "platform/files.h"
#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

constexpr int kDeleteAttempts = 500;
constexpr int kDeletePauseMs = 10;

}  // namespace

std::optional<std::vector<std::string>> ReadScenarioFile(const Files& files, const TextCodec& codec,
                                                         const std::string& path) {
    const auto bytes = files.Read(path);
    if (!bytes) return std::nullopt;
    return ReadScenarioText(*bytes, codec);
}

bool WriteScenarioFile(Files& files, const TextCodec& codec, const std::string& path,
                       const std::vector<std::string>& lines, bool cipher) {
    return files.Replace(path, WriteScenarioText(lines, codec, cipher));
}

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
