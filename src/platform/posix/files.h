#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tamrin {

// The files of a POSIX system. Only "/" separates folders, and a path is passed to the system
// unchanged. Only the root folder is answered with a final separator.
//
// Replace writes through a symbolic link, keeps the permissions of the old file and, where the
// system allows it, its owner, and refuses what a person could not write to: a file without write
// permission, a folder, a device. What is new is for this user alone.
class PosixFiles : public Files {
public:
    bool IsFile(const std::string& path) const override;
    bool IsFolder(const std::string& path) const override;
    std::optional<std::string> Read(const std::string& path) const override;
    std::optional<std::string> ReadPart(const std::string& path, std::uint64_t offset,
                                        std::size_t size) const override;
    std::optional<std::uint64_t> Size(const std::string& path) const override;
    bool Append(const std::string& path, std::string_view bytes) override;
    bool Replace(const std::string& path, std::string_view bytes) override;
    bool MakeFolder(const std::string& path) override;
    bool Delete(const std::string& path) override;
    std::unique_ptr<FileLock> Lock(const std::string& path) override;
    std::vector<std::string> List(const std::string& folder,
                                  std::string_view extension) const override;
    std::string ProgramFolder() const override;
    std::string CurrentFolder() const override;
    char Separator() const override { return '/'; }
};

}  // namespace tamrin
