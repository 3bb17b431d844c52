#pragma once

#include <algorithm>
#include <map>
#include <set>

#include "platform/files.h"

namespace tamrin::test {

// Files in memory, in the folder of a Windows program.
class MemoryFiles : public Files {
public:
    std::map<std::string, std::string> contents;
    std::set<std::string> locked;  // can be read, but neither written nor deleted
    bool full_disk = false;
    bool loses_ends = false;  // of what is written

    bool IsFile(const std::string& path) const override { return contents.contains(path); }
    bool IsFolder(const std::string& path) const override {
        const auto next = contents.lower_bound(path + "\\");
        return next != contents.end() && next->first.starts_with(path + "\\");
    }
    std::optional<std::string> Read(const std::string& path) const override {
        return IsFile(path) ? std::optional(contents.at(path)) : std::nullopt;
    }
    std::optional<std::string> ReadPart(const std::string& path, std::uint64_t offset,
                                        std::size_t size) const override {
        const auto bytes = Read(path);
        return bytes ? bytes->substr(std::min<std::uint64_t>(offset, bytes->size()), size) : bytes;
    }
    std::optional<std::uint64_t> Size(const std::string& path) const override {
        return IsFile(path) ? std::optional(contents.at(path).size()) : std::nullopt;
    }
    bool Replace(const std::string& path, std::string_view bytes) override {
        if (CanWrite(path)) contents[path] = bytes.substr(0, bytes.size() - loses_ends);
        return CanWrite(path);
    }
    bool Append(const std::string& path, std::string_view bytes) override {
        return Replace(path, Read(path).value_or("").append(bytes));
    }
    bool MakeFolder(const std::string& /*path*/) override { return !full_disk; }
    bool Delete(const std::string& path) override {
        if (!locked.contains(path)) contents.erase(path);
        return !contents.contains(path);
    }
    std::unique_ptr<FileLock> Lock(const std::string& path) override {
        struct Held : FileLock {
            std::shared_ptr<int> held = std::make_shared<int>();
        };
        if (!holders_[path].expired()) return nullptr;
        auto lock = std::make_unique<Held>();
        holders_[path] = lock->held;
        return lock;
    }
    std::vector<std::string> List(const std::string& folder,
                                  std::string_view extension) const override {
        std::vector<std::string> names;
        for (const auto& [path, bytes] : contents) {
            const auto name = path.rfind('\\') + 1;
            const bool listed = path.substr(0, name) == folder + "\\" && path.ends_with(extension);
            if (listed) names.push_back(path.substr(name));
        }
        return names;
    }
    std::string ProgramFolder() const override { return "C:\\tamrin"; }
    std::string CurrentFolder() const override { return "C:\\work"; }
    char Separator() const override { return '\\'; }

private:
    bool CanWrite(const std::string& path) const { return !full_disk && !locked.contains(path); }

    std::map<std::string, std::weak_ptr<int>> holders_;
};

}  // namespace tamrin::test
