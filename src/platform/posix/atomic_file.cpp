#include "platform/posix/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <optional>

#include "platform/posix/descriptor.h"

namespace tamrin {
namespace {

constexpr int kMostLinks = 40;  // as many as the system itself follows
constexpr int kMostNames = 100;

// The folder of `path` with its final separator; empty for the current one.
std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

// Follows symbolic links to the path that a write would reach, whether a file stands there or not.
// Renaming onto the link itself would cut the link instead.
std::optional<std::string> FollowLinks(std::string path) {
    for (int links = 0; links < kMostLinks; ++links) {
        std::array<char, PATH_MAX> target;
        const ssize_t length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0) return path;
        const std::string_view next(target.data(), static_cast<std::size_t>(length));
        path = (next.starts_with('/') ? std::string() : FolderOf(path)).append(next);
    }
    return std::nullopt;
}

// Opens a new file in `folder` and answers its path in `path`; -1 on failure. The process number
// keeps two programs apart, the count passes over what a crash left.
int OpenNewFile(const std::string& folder, mode_t mode, std::string& path) {
    for (int i = 0; i < kMostNames; ++i) {
        path = folder + ".tamrin-" + std::to_string(getpid()) + "-" + std::to_string(i);
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file >= 0 || errno != EEXIST) return file;
    }
    return -1;
}

// Gives a file the owner and the permissions of the one whose place it takes. Where the system
// refuses the group, the rights of a group fall away, for it would be another one.
void TakeOver(int file, const struct stat& old) {
    const bool grouped =
        fchown(file, old.st_uid, old.st_gid) == 0 || fchown(file, -1U, old.st_gid) == 0;
    fchmod(file, old.st_mode & (grouped ? 0777U : 0707U));
}

// Makes a rename survive a power cut. Some file systems cannot; the file itself is safe by then.
void FlushFolder(const std::string& folder) {
    const Descriptor descriptor(
        open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor) fsync(descriptor.get());
}

}  // namespace

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool ReplaceFile(const std::string& path, std::string_view bytes) {
    const auto target = FollowLinks(path);
    if (!target) return false;
    struct stat old;
    const bool exists = stat(target->c_str(), &old) == 0;
    if (exists && (!S_ISREG(old.st_mode) || access(target->c_str(), W_OK) != 0)) return false;

    const std::string folder = FolderOf(*target);
    std::string beside;
    Descriptor file(OpenNewFile(folder, exists ? 0600 : 0666, beside));
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

}  // namespace tamrin
