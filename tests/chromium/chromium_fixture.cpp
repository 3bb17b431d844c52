#include "chromium/chromium_fixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tamrin {

std::unique_ptr<conformance::BackEnd> conformance::MakeBackEnd() {
    return std::make_unique<test::Rig>();
}

std::vector<int> test::BrowserProcesses(const std::string& profile) {
    std::vector<int> ids;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        std::ifstream file(entry.path() / "cmdline", std::ios::binary);
        const std::string line{std::istreambuf_iterator<char>(file), {}};
        if (profile.empty() || line.find(profile) == std::string::npos) continue;
        const bool is_first = line.find("--type=") == std::string::npos;
        ids.insert(is_first ? ids.begin() : ids.end(), std::stoi(entry.path().filename()));
    }
    return ids;
}

}  // namespace tamrin
