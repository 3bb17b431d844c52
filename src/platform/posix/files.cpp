#include "platform/posix/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include "platform/posix/descriptor.h"
#include "platform/posix/processes.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr int kMaxLinks = 40;  // as many as the system itself follows
constexpr int kMaxNames = 100;
constexpr int kPipeWaitMs = 10000;

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// The folder of `path` with its final separator; empty for the current one.
std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// Follows symbolic links to the path that a write would reach, whether that file exists or not.
// Renaming onto the link itself would replace the link.
std::optional<std::string> FollowLinks(std::string path) {
    for (int links = 0; links < kMaxLinks; ++links) {
        std::array<char, PATH_MAX> target;
        const ssize_t length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0) return path;
        const std::string_view next(target.data(), static_cast<std::size_t>(length));
        path = (next.starts_with('/') ? std::string() : FolderOf(path)).append(next);
    }
    return std::nullopt;
}

// Opens a new file in `folder` and sets `path` to its path; -1 on failure. The process number keeps
// two programs apart, and the count skips files that a crash has left.
int OpenNewFile(const std::string& folder, std::string& path) {
    for (int i = 0; i < kMaxNames; ++i) {
        path = folder + ".tamrin-" + std::to_string(getpid()) + "-" + std::to_string(i);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

// Gives a file the owner and the permissions of the one that it replaces. Where the system refuses
// the group, the new file gets no group permissions, because its group is another one.
void TakeOver(int file, const struct stat& old) {
    const bool grouped =
        fchown(file, old.st_uid, old.st_gid) == 0 || fchown(file, -1U, old.st_gid) == 0;
    fchmod(file, old.st_mode & (grouped ? 0777U : 0707U));
}

// Makes a rename survive a power cut. Some file systems cannot; the file itself is flushed already.
void FlushFolder(const std::string& folder) {
    const Descriptor descriptor(
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor) fsync(descriptor.get());
}

// Holds the lock of an open file and deletes the file before it gives up the lock.
class PosixFileLock : public FileLock {
public:
    PosixFileLock(std::string path, int file) : path_(std::move(path)), file_(file) {}
    PosixFileLock(const PosixFileLock&) = delete;
    PosixFileLock& operator=(const PosixFileLock&) = delete;
    ~PosixFileLock() override {
        if (Held()) unlink(path_.c_str());
    }

    // Whether the lock is held, on the file that is at the path now: the program that had the lock
    // before may have deleted the file that was opened.
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
    // Otherwise the system would wait without end for somebody to open the other end of a pipe.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (!file || fstat(file.get(), &status) != 0) return std::nullopt;
    // The size is a hint: a pipe and a device have none, and a file may grow meanwhile. One byte
    // more finds the end of an ordinary file without a second block.
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > kMaxFileSize) return std::nullopt;
    std::string bytes(size + 1, '\0');
    pollfd readable{file.get(), POLLIN, 0};
    for (std::size_t used = 0; used <= kMaxFileSize;) {
        if (used == bytes.size()) bytes.resize(2 * bytes.size() + 4096);
        if (poll(&readable, 1, kPipeWaitMs) == 0) return std::nullopt;
        const ssize_t count = read(file.get(), bytes.data() + used, bytes.size() - used);
        if (count == 0) {
            bytes.resize(used);
            return bytes;
        }
        if (count > 0) used += static_cast<std::size_t>(count);
        if (count < 0 && errno != EINTR && errno != EAGAIN) return std::nullopt;
    }
    return std::nullopt;
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
    const auto target = FollowLinks(path);
    if (!target) return false;
    struct stat old;
    const bool exists = stat(target->c_str(), &old) == 0;
    if (exists && (!S_ISREG(old.st_mode) || access(target->c_str(), W_OK) != 0)) return false;

    const std::string folder = FolderOf(*target);
    std::string beside;
    Descriptor file(OpenNewFile(folder, beside));
    if (!file) return false;
    if (exists) TakeOver(file.get(), old);
    const bool replaced = WriteAll(file.get(), bytes) && fsync(file.get()) == 0 && file.Close() &&
                          rename(beside.c_str(), target->c_str()) == 0;
    if (replaced) {
        FlushFolder(folder);
    } else {
        unlink(beside.c_str());
    }
    return replaced;
}

bool PosixFiles::Append(const std::string& path, std::string_view bytes) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    return file && WriteAll(file.get(), bytes) && fsync(file.get()) == 0 && file.Close();
}

bool PosixFiles::MakeFolder(const std::string& path) {
    mkdir(path.c_str(), 0700);
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
    const std::string program = PosixProcesses().OwnExecutable();
    if (program.empty()) return CurrentFolder();
    return program.substr(0, std::max<std::size_t>(1, program.rfind('/')));
}

std::string PosixFiles::CurrentFolder() const {
    std::array<char, PATH_MAX> folder;
    if (!getcwd(folder.data(), folder.size())) return ".";
    return folder.data();
}

}  // namespace tamrin
