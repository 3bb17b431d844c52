#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/files.h"

namespace tamrin::test {

// Files in memory, in the folder of a Windows program.
class MemoryFiles : public Files {
public:
    std::map<std::string, std::string> contents;
    std::set<std::string> locked;  // can be read, and neither written nor deleted
    bool full_disk = false;
    std::set<std::string> held;              // by Lock
    mutable std::vector<std::size_t> parts;  // the sizes asked for by ReadPart

    bool IsFile(const std::string& path) const override { return contents.contains(path); }
    bool IsFolder(const std::string& path) const override {
        const std::string folder = path.ends_with('\\') ? path : path + "\\";
        const auto next = contents.lower_bound(folder);
        return next != contents.end() && next->first.starts_with(folder);
    }
    std::optional<std::string> Read(const std::string& path) const override {
        const auto file = contents.find(path);
        if (file == contents.end()) return std::nullopt;
        return file->second;
    }
    std::optional<std::string> ReadPart(const std::string& path, std::uint64_t offset,
                                        std::size_t size) const override {
        const auto file = contents.find(path);
        if (file == contents.end()) return std::nullopt;
        parts.push_back(size);
        return file->second.substr(std::min<std::uint64_t>(offset, file->second.size()), size);
    }
    std::optional<std::uint64_t> Size(const std::string& path) const override {
        const auto file = contents.find(path);
        if (file == contents.end()) return std::nullopt;
        return file->second.size();
    }
    bool Replace(const std::string& path, std::string_view bytes) override {
        if (full_disk || locked.contains(path)) return false;
        contents[path] = bytes;
        return true;
    }
    bool Append(const std::string& path, std::string_view bytes) override {
        if (full_disk || locked.contains(path)) return false;
        contents[path] += bytes;
        return true;
    }
    bool MakeFolder(const std::string& /*path*/) override { return !full_disk; }
    bool Delete(const std::string& path) override {
        if (!locked.contains(path)) contents.erase(path);
        return !contents.contains(path);
    }
    std::unique_ptr<FileLock> Lock(const std::string& path) override {
        class Held : public FileLock {
        public:
            Held(std::set<std::string>& all, std::string path) : all_(all), path_(std::move(path)) {
                all_.insert(path_);
            }
            ~Held() override { all_.erase(path_); }
            Held(const Held&) = delete;
            Held& operator=(const Held&) = delete;

        private:
            std::set<std::string>& all_;
            std::string path_;
        };
        return held.contains(path) ? nullptr : std::make_unique<Held>(held, path);
    }
    std::vector<std::string> List(const std::string& folder,
                                  std::string_view extension) const override {
        std::vector<std::string> names;
        for (const auto& [path, bytes] : contents) {
            if (!path.starts_with(folder + "\\") || !path.ends_with(extension)) continue;
            const std::string name = path.substr(folder.size() + 1);
            if (name.find('\\') == std::string::npos) names.push_back(name);
        }
        return names;
    }
    std::string ProgramFolder() const override { return "C:\\tamrin"; }
    std::string CurrentFolder() const override { return "C:\\work"; }
    char Separator() const override { return '\\'; }
};

}  // namespace tamrin::test
