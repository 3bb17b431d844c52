#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tamrin::test {

// The files of this computer, as far as a browser back end needs them.
class HostFiles : public Files {
public:
    bool IsFile(const std::string& path) const override {
        std::error_code error;
        return std::filesystem::is_regular_file(path, error);
    }
    bool IsFolder(const std::string& path) const override {
        std::error_code error;
        return std::filesystem::is_directory(path, error);
    }
    std::optional<std::string> Read(const std::string& path) const override {
        std::ifstream file(path, std::ios::binary);
        if (!file) return std::nullopt;
        return std::string(std::istreambuf_iterator<char>(file), {});
    }
    bool Replace(const std::string& path, std::string_view bytes) override {
        return static_cast<bool>(std::ofstream(path, std::ios::binary) << bytes);
    }
    bool Delete(const std::string& path) override {
        std::error_code error;
        return std::filesystem::remove(path, error);
    }
    std::vector<std::string> List(const std::string&, std::string_view) const override {
        return {};
    }
    std::string ProgramFolder() const override { return CurrentFolder(); }
    std::string CurrentFolder() const override { return std::filesystem::current_path().string(); }
    char Separator() const override { return '/'; }
};

}  // namespace tamrin::test
