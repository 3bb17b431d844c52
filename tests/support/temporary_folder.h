#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace tamrin {

// An empty folder for one test, deleted with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            path_ = (std::filesystem::temp_directory_path() /
                     ("tamrin-test-" + std::to_string(random())))
                        .string();
        } while (!std::filesystem::create_directory(path_));
    }
    // Several attempts, because the last processes of a browser may still write into it.
    ~TemporaryFolder() {
        std::error_code failure;
        for (int i = 0; i < 20; ++i) std::filesystem::remove_all(path_, failure);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string At(const std::string& name) const { return path_ + "/" + name; }

    std::string Write(const std::string& name, std::string_view bytes) const {
        std::ofstream(At(name), std::ios::binary) << bytes;
        return At(name);
    }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.insert(entry.path().filename().string());
        }
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
