#include "platform/posix/processes.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace tamrin {
namespace {

class PosixProcess : public Process {
public:
    PosixProcess(pid_t id, bool outlives, const PipeEnds& pipe)
        : id_(id), outlives_(outlives), pipe_(pipe) {}
    ~PosixProcess() override {
        if (!outlives_) PosixProcess::Kill();
    }

    PosixProcess(const PosixProcess&) = delete;
    PosixProcess& operator=(const PosixProcess&) = delete;

    bool Running() override {
        if (!reaped_) reaped_ = waitpid(id_, nullptr, WNOHANG) != 0;
        return !reaped_;
    }

    void Kill() override {
        if (killed_) return;
        killed_ = true;
        // The group outlives its first process while any of its children runs.
        kill(-id_, SIGKILL);
        while (!reaped_ && waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
        }
        reaped_ = true;
    }

    PipeEnds TakePipe() override { return pipe_; }

private:
    const pid_t id_;
    const bool outlives_;
    const PipeEnds pipe_;
    bool reaped_ = false;
    bool killed_ = false;
};

// The name of a socket in a folder below is at most this long; the system takes 107 characters.
constexpr std::size_t kLongestTemporary = 60;

// This process's environment with `temporary` as the folder for temporary files, "" for the same.
// The encoding is UTF-8 where it sets none, as on many servers: programs read file names and the
// paths in their arguments in this encoding.
std::vector<std::string> EnvironmentFor(const std::string& temporary) {
    const char* encoding = "";
    for (const char* name : {"LANG", "LC_CTYPE", "LC_ALL"}) {
        if (const char* value = getenv(name); value && *value) encoding = value;
    }
    const std::string_view locale = encoding;
    const bool is_utf8 = locale.find("UTF-8") != std::string_view::npos ||
                         locale.find("utf8") != std::string_view::npos;
    std::vector<std::string> variables;
    const bool moves = !temporary.empty() && temporary.size() <= kLongestTemporary;
    for (char** variable = environ; *variable; ++variable) {
        const std::string_view text = *variable;
        const bool replaced =
            (!is_utf8 && text.starts_with("LC_ALL=")) || (moves && text.starts_with("TMPDIR="));
        if (!replaced) variables.emplace_back(text);
    }
    if (!is_utf8) variables.emplace_back("LC_ALL=C.UTF-8");
    if (moves) variables.emplace_back("TMPDIR=" + temporary);
    return variables;
}

// The words in the form of the system's calls; they must outlive the answer.
std::vector<char*> Pointers(const std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

// The files that a new program gets beside the standard ones.
struct Inherited {
    Descriptor in, out;     // its ends of the pipe
    std::vector<int> kept;  // open in it as well, so that they stay open as long as it runs
};

// Below these numbers the new program's own files are put.
constexpr int kFirstFreeFile = 10;

// Runs in the new process, where only calls that are safe after fork are allowed. Returns only when
// the program cannot be started.
void BecomeProgram(char* const* command, char* const* environment, bool outlives, pid_t parent,
                   const Inherited& files) {
    if (outlives) {
        setsid();
    } else {
        setpgid(0, 0);
#ifdef __linux__
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(1);  // it has ended already
#else
        (void)parent;
#endif
    }
    for (const int file : files.kept) fcntl(file, F_DUPFD, kFirstFreeFile);
    if (files.in) {
        const int in = fcntl(files.in.get(), F_DUPFD_CLOEXEC, kFirstFreeFile);
        const int out = fcntl(files.out.get(), F_DUPFD_CLOEXEC, kFirstFreeFile);
        dup2(in, 3);
        dup2(out, 4);
    }
    const int nothing = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
    if (nothing > STDERR_FILENO) close(nothing);
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_DFL);
    // The raised priority is for this program only.
    if (getpriority(PRIO_PROCESS, 0) < 0) setpriority(PRIO_PROCESS, 0, 0);
    execve(command[0], command, environment);
}

// Two connected files. Sockets, so that a browser that waits for a message can still end.
bool MakePipe(Descriptor& one, Descriptor& other) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) return false;
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    one = Descriptor(ends[0]);
    other = Descriptor(ends[1]);
    return true;
}

// The id of the new process, or nothing when the program cannot be started.
std::optional<pid_t> Spawn(const ProgramStart& start, const Inherited& files) {
    std::vector<std::string> command = start.arguments;
    command.insert(command.begin(), start.executable);
    const std::vector<char*> words = Pointers(command);
    const std::vector<std::string> variables = EnvironmentFor(start.folder);
    const std::vector<char*> environment = Pointers(variables);

    // A successful exec closes this pipe without a byte in it.
    std::array<int, 2> failure{};
    if (pipe(failure.data()) != 0) return std::nullopt;
    const Descriptor told(failure[0]);
    Descriptor tells(fcntl(failure[1], F_DUPFD_CLOEXEC, kFirstFreeFile));
    fcntl(told.get(), F_SETFD, FD_CLOEXEC);
    close(failure[1]);
    const pid_t parent = getpid();
    const pid_t id = fork();
    if (id == 0) {
        BecomeProgram(words.data(), environment.data(), start.outlives, parent, files);
        const char failed = 1;
        [[maybe_unused]] const auto written = write(tells.get(), &failed, 1);
        _exit(127);
    }
    tells.Close();
    char failed = 0;
    ssize_t got = 0;
    do {
        got = id < 0 ? 1 : read(told.get(), &failed, 1);
    } while (got < 0 && errno == EINTR);
    if (id < 0) return std::nullopt;
    if (got != 0) waitpid(id, nullptr, 0);
    return got == 0 ? std::optional(id) : std::nullopt;
}

bool IsExecutable(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

constexpr std::string_view kFolderStart = "tamrin-profile-";
constexpr std::size_t kFolderMark = 6;  // letters behind it, which mkdtemp chooses
constexpr int kFolderAttempts = 10;

// The lock of a folder of this user; nothing where a program holds it, or where the folder is gone.
Descriptor LockFolder(const std::string& folder) {
    Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat held, standing;
    const bool own = lock && flock(lock.get(), LOCK_EX | LOCK_NB) == 0 &&
                     fstat(lock.get(), &held) == 0 && stat(folder.c_str(), &standing) == 0 &&
                     held.st_ino == standing.st_ino && held.st_uid == geteuid();
    return own ? std::move(lock) : Descriptor();
}

// Deletes the temporary folders in `base` that no program holds.
void RemoveAbandoned(const std::string& base) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(base, error)) {
        const std::string name = entry.path().filename().string();
        const bool is_one =
            name.starts_with(kFolderStart) && name.size() == kFolderStart.size() + kFolderMark;
        if (!is_one) continue;
        const Descriptor lock = LockFolder(entry.path().string());
        if (lock) std::filesystem::remove_all(entry.path(), error);
    }
}

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

std::unique_ptr<Process> PosixProcesses::Start(const ProgramStart& start) {
    Inherited files;
    Descriptor from, to;
    if (start.piped && !(MakePipe(to, files.in) && MakePipe(from, files.out))) return nullptr;
    if (start.piped && start.outlives) files.kept = {from.get(), to.get()};
    const auto lock = locks_.find(start.folder);
    if (lock != locks_.end()) files.kept.push_back(lock->second.get());
    const auto id = Spawn(start, files);
    if (!id) return nullptr;
    return std::make_unique<PosixProcess>(*id, start.outlives,
                                          PipeEnds{from.Release(), to.Release()});
}

std::string PosixProcesses::FindExecutable(const std::string& name) const {
    if (name.empty()) return "";
    if (name.find('/') != std::string::npos) return IsExecutable(name) ? name : "";
    const std::string path = Environment("PATH");
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find(':', begin), path.size());
        const std::string folder = path.substr(begin, end - begin);
        std::string full = (folder.empty() ? "." : folder) + "/" + name;
        if (IsExecutable(full)) return full;
        begin = end + 1;
    }
    return "";
}

std::string PosixProcesses::MakeTemporaryFolder() {
    std::string base = Environment("TMPDIR");
    if (base.empty()) base = "/tmp";
    RemoveAbandoned(base);
    for (int attempt = 0; attempt < kFolderAttempts; ++attempt) {
        std::string folder = (base + "/").append(kFolderStart).append(kFolderMark, 'X');
        if (!mkdtemp(folder.data())) return "";
        Descriptor lock = LockFolder(folder);
        // Another program that starts just now may have taken it for an abandoned one.
        if (lock) return locks_.emplace(folder, std::move(lock)).first->first;
    }
    return "";
}

void PosixProcesses::RemoveTemporaryFolder(const std::string& folder) {
    if (folder.empty()) return;
    // Programs that were just killed may still be writing their last file into it.
    for (int attempt = 0; attempt < 20; ++attempt) {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
        if (!error && !std::filesystem::exists(folder, error)) break;
        usleep(10000);
    }
    locks_.erase(folder);
}

bool PosixProcesses::HasDisplay() const {
    return !Environment("DISPLAY").empty() || !Environment("WAYLAND_DISPLAY").empty();
}

bool PosixProcesses::IsRoot() const { return geteuid() == 0; }

std::string PosixProcesses::Environment(const std::string& name) const {
    const char* value = getenv(name.c_str());
    return value ? value : "";
}

std::string PosixProcesses::OwnExecutable() const {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

// The system does not open a running program for writing; opening alone changes nothing. This
// program's own file is compared first, because some kernels do open it.
bool PosixProcesses::IsRunning(const std::string& executable) const {
    struct stat file, own;
    if (stat(executable.c_str(), &file) != 0 || !S_ISREG(file.st_mode)) return false;
    if (stat(OwnExecutable().c_str(), &own) == 0 && file.st_ino == own.st_ino &&
        file.st_dev == own.st_dev) {
        return true;
    }
    const int opened = open(executable.c_str(), O_WRONLY | O_CLOEXEC);
    if (opened < 0) return errno == ETXTBSY;
    close(opened);
    return false;
}

void PosixProcesses::AllowRunning(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return;
    const mode_t readers = status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH);
    chmod(path.c_str(), (status.st_mode & 07777U) | readers >> 2U);
}

void PosixProcesses::RaisePriority() { setpriority(PRIO_PROCESS, 0, -10); }

void PosixProcesses::CatchSignals() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
    struct sigaction action{};
    action.sa_handler = [](int /*signal*/) { interrupted = 1; };
    action.sa_flags = SA_RESETHAND;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool PosixProcesses::Interrupted() { return interrupted != 0; }

}  // namespace tamrin
