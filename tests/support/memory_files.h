#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/files.h"

namespace tamrin::test {

// Files in memory, in the folder of a Windows program.
class MemoryFiles : public Files {
public:
    std::map<std::string, std::string> contents;
    bool full_disk = false;

    bool IsFile(const std::string& path) const override { return contents.contains(path); }
    bool IsFolder(const std::string& path) const override {
        const auto next = contents.lower_bound(path + "\\");
        return next != contents.end() && next->first.starts_with(path + "\\");
    }
    std::optional<std::string> Read(const std::string& path) const override {
        const auto file = contents.find(path);
        if (file == contents.end()) return std::nullopt;
        return file->second;
    }
    bool Replace(const std::string& path, std::string_view bytes) override {
        if (!full_disk) contents[path] = bytes;
        return !full_disk;
    }
    bool MakeFolder(const std::string& /*path*/) override { return !full_disk; }
    bool Delete(const std::string& path) override { return contents.erase(path) > 0; }
    std::vector<std::string> List(const std::string& /*folder*/,
                                  std::string_view /*extension*/) const override {
        return {};
    }
    std::string ProgramFolder() const override { return "C:\\tamrin"; }
    std::string CurrentFolder() const override { return "C:\\work"; }
    char Separator() const override { return '\\'; }
};

}  // namespace tamrin::test
