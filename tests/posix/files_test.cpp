#include "platform/posix/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/temporary_folder.h"

namespace tamrin {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

TEST(Replace, KeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    PosixFiles files;
    const std::string path = folder.Write("a.csv", "old");
    fs::permissions(path, fs::perms{0640});
    fs::create_directory(folder.At("links"));
    fs::create_symlink("../a.csv", folder.At("links/b.csv"));
    fs::create_symlink("links/b.csv", folder.At("c.csv"));
    fs::create_symlink("new.csv", folder.At("dangling"));
    fs::create_symlink("loop", folder.At("loop"));

    EXPECT_TRUE(files.Replace(folder.At("c.csv"), "new"));
    EXPECT_EQ(FileBytes(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0640});
    EXPECT_TRUE(fs::is_symlink(folder.At("c.csv")) && fs::is_symlink(folder.At("links/b.csv")));
    EXPECT_TRUE(files.Replace(folder.At("dangling"), "new"));
    EXPECT_EQ(FileBytes(folder.At("new.csv")), "new");
    EXPECT_EQ(fs::status(folder.At("new.csv")).permissions(), fs::perms{0600});
    EXPECT_FALSE(files.Replace(folder.At("loop"), "new"));
    EXPECT_EQ(folder.Names(), (Names{"a.csv", "c.csv", "dangling", "links", "loop", "new.csv"}));
}

TEST(Replace, LeavesEverythingAsItWasOnFailure) {
    const TemporaryFolder folder;
    PosixFiles files;
    const std::string path = folder.Write("a.csv", "old");
    mkfifo(folder.At("pipe").c_str(), 0600);
    EXPECT_FALSE(files.Replace(folder.At("pipe"), "new"));
    // Files whose size is not known beforehand; the second one never ends.
    EXPECT_NE(files.Read("/proc/self/maps").value_or("").size(), 0U);
    EXPECT_FALSE(files.Read("/dev/zero"));

    // A full disk: files may not grow beyond 4096 bytes.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{4096, before.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(files.Replace(path, std::string(100000, 'x')));
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    EXPECT_EQ(FileBytes(path), "old");
    EXPECT_EQ(folder.Names(), (Names{"a.csv", "pipe"}));
}

TEST(Lock, EndsWithItsProgramHoweverThatComes) {
    const TemporaryFolder folder;
    PosixFiles files;
    const pid_t other = fork();
    if (other == 0) {
        const auto lock = files.Lock(folder.At("a.lock"));
        raise(lock ? SIGSTOP : SIGKILL);
    }
    int status = 0;
    waitpid(other, &status, WUNTRACED);
    EXPECT_TRUE(WIFSTOPPED(status));
    EXPECT_FALSE(files.Lock(folder.At("a.lock")));
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_TRUE(files.Lock(folder.At("a.lock")));
    EXPECT_EQ(folder.Names(), Names{});
}

}  // namespace
}  // namespace tamrin
