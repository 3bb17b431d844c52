#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace tamrin {

// An empty folder for one test, deleted with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        const std::string parent = std::filesystem::temp_directory_path().string();
        path_ = parent + "/tamrin-test-" + std::to_string(std::random_device()());
        std::filesystem::create_directory(path_);
    }
    // Several attempts, because the last processes of a browser may still write into it.
    ~TemporaryFolder() {
        std::error_code failure;
        for (int i = 0; i < 20; ++i) std::filesystem::remove_all(path_, failure);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string At(const std::string& name) const { return path_ + "/" + name; }

    std::string Write(const std::string& name, std::string_view bytes) const {
        std::ofstream(At(name), std::ios::binary) << bytes;
        return At(name);
    }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        const std::filesystem::directory_iterator entries(path_);
        for (const auto& entry : entries) names.insert(entry.path().filename().string());
        return names;
    }

private:
    std::string path_;
};

inline std::string FileBytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

}  // namespace tamrin
