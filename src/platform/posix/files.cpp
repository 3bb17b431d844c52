#include "platform/posix/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <memory>

#include "platform/posix/atomic_file.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/own_executable.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// Holds the lock of an open file, and deletes the file before it lets go of it.
class PosixFileLock : public FileLock {
public:
    PosixFileLock(std::string path, int file) : path_(std::move(path)), file_(file) {}
    PosixFileLock(const PosixFileLock&) = delete;
    PosixFileLock& operator=(const PosixFileLock&) = delete;
    ~PosixFileLock() override {
        if (Held()) unlink(path_.c_str());
    }

    // Whether the lock was to be had, on the file that stands at the path: he who held it before
    // may have deleted the one that was opened.
    bool Held() const {
        struct stat own, standing;
        return file_ && flock(file_.get(), LOCK_EX | LOCK_NB) == 0 &&
               fstat(file_.get(), &own) == 0 && stat(path_.c_str(), &standing) == 0 &&
               own.st_ino == standing.st_ino && own.st_dev == standing.st_dev;
    }

private:
    const std::string path_;
    const Descriptor file_;
};

}  // namespace

bool PosixFiles::IsFile(const std::string& path) const {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool PosixFiles::IsFolder(const std::string& path) const {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<std::string> PosixFiles::Read(const std::string& path) const {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (!file || fstat(file.get(), &status) != 0) return std::nullopt;
    // The size is a hint: a pipe has none, and a file may grow meanwhile. One byte more than it
    // tells the end of an ordinary file without a second block.
    std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t used = 0;
    for (;;) {
        if (used == bytes.size()) bytes.resize(2 * bytes.size() + 4096);
        const ssize_t count = read(file.get(), bytes.data() + used, bytes.size() - used);
        if (count == 0) break;
        if (count > 0) used += static_cast<std::size_t>(count);
        if (count < 0 && errno != EINTR) return std::nullopt;
    }
    bytes.resize(used);
    return bytes;
}

std::optional<std::string> PosixFiles::ReadPart(const std::string& path, std::uint64_t offset,
                                                std::size_t size) const {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) return std::nullopt;
    std::string bytes(size, '\0');
    std::size_t used = 0;
    while (used < size) {
        const ssize_t count =
            pread(file.get(), bytes.data() + used, size - used, static_cast<off_t>(offset + used));
        if (count == 0) break;
        if (count > 0) used += static_cast<std::size_t>(count);
        if (count < 0 && errno != EINTR) return std::nullopt;
    }
    bytes.resize(used);
    return bytes;
}

std::optional<std::uint64_t> PosixFiles::Size(const std::string& path) const {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

bool PosixFiles::Replace(const std::string& path, std::string_view bytes) {
    return ReplaceFile(path, bytes);
}

bool PosixFiles::Append(const std::string& path, std::string_view bytes) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    return file && WriteAll(file.get(), bytes) && fsync(file.get()) == 0 && file.Close();
}

bool PosixFiles::MakeFolder(const std::string& path) {
    mkdir(path.c_str(), 0777);
    return IsFolder(path);
}

bool PosixFiles::Delete(const std::string& path) {
    struct stat status;
    return unlink(path.c_str()) == 0 || lstat(path.c_str(), &status) != 0;
}

std::unique_ptr<FileLock> PosixFiles::Lock(const std::string& path) {
    auto lock = std::make_unique<PosixFileLock>(
        path, open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    return lock->Held() ? std::move(lock) : nullptr;
}

std::vector<std::string> PosixFiles::List(const std::string& folder,
                                          std::string_view extension) const {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    if (!listing) return names;
    while (const dirent* entry = readdir(listing.get())) {
        const std::string_view name = entry->d_name;
        if (EndsWithIgnoreCase(name, extension) && IsFile(folder + "/" + entry->d_name)) {
            names.emplace_back(name);
        }
    }
    return names;
}

std::string PosixFiles::ProgramFolder() const {
    const std::string program = OwnExecutable();
    if (program.empty()) return CurrentFolder();
    return program.substr(0, std::max<std::size_t>(1, program.rfind('/')));
}

std::string PosixFiles::CurrentFolder() const {
    std::array<char, PATH_MAX> folder;
    if (!getcwd(folder.data(), folder.size())) return ".";
    return folder.data();
}

}  // namespace tamrin
