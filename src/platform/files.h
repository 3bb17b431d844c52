#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

// Keeps a lock; dropping it, or the end of the program however it comes, gives the lock up.
class FileLock {
public:
    virtual ~FileLock() = default;
};

// The longest file that is read as a whole, in bytes.
inline constexpr std::size_t kMaxFileSize = std::size_t{128} << 20U;

// Files and folders by UTF-8 path. Both "/" and "\" separate folders where the system allows it.
// Nothing throws; what fails says so in its answer.
class Files {
public:
    virtual ~Files() = default;

    // Whether a file (not a folder) stands at `path`.
    virtual bool IsFile(const std::string& path) const = 0;

    // Whether `path` is an existing folder.
    virtual bool IsFolder(const std::string& path) const = 0;

    // The bytes of a file. Nothing when it cannot be read to its end, when it is longer than
    // kMaxFileSize, and when it is a pipe into which nothing is written for ten seconds.
    virtual std::optional<std::string> Read(const std::string& path) const = 0;

    // The bytes of a file from `offset` on, `size` of them or fewer where it ends before. Nothing
    // when it cannot be read.
    virtual std::optional<std::string> ReadPart(const std::string& path, std::uint64_t offset,
                                                std::size_t size) const = 0;

    // The size of a file in bytes, or nothing when there is none.
    virtual std::optional<std::uint64_t> Size(const std::string& path) const = 0;

    // Replaces the file by `bytes` as one step: written beside it, flushed to the disk, renamed.
    // On failure the old file stands as it was, nothing is left beside it, and the answer is false.
    virtual bool Replace(const std::string& path, std::string_view bytes) = 0;

    // Adds `bytes` at the end of a file, which is made when there is none, and flushes them to the
    // disk. On failure answers false; a part of them may have been written then.
    virtual bool Append(const std::string& path, std::string_view bytes) = 0;

    // Makes a folder in an existing one; false when it does not exist afterwards.
    virtual bool MakeFolder(const std::string& path) = 0;

    // Deletes a file; false when it is still there afterwards.
    virtual bool Delete(const std::string& path) = 0;

    // Locks a path for this program. Null while it is locked, by another program or by this one,
    // and where no file can be made: an empty one stands there as long as the lock is held.
    virtual std::unique_ptr<FileLock> Lock(const std::string& path) = 0;

    // Names (without folder) of the files in `folder` whose names end in `extension` (with its full
    // stop, letter case ignored), in the order in which the system lists them.
    virtual std::vector<std::string> List(const std::string& folder,
                                          std::string_view extension) const = 0;

    // The folder in which the program's executable stands, without a final separator.
    virtual std::string ProgramFolder() const = 0;

    // The folder against which the system resolves a relative path, without a final separator.
    virtual std::string CurrentFolder() const = 0;

    // The separator that this system prefers: '\\' on Windows, '/' elsewhere.
    virtual char Separator() const = 0;
};

}  // namespace tamrin
