#include "platform/posix/processes.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
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

namespace tamrin {
namespace {

class PosixProcess : public Process {
public:
    explicit PosixProcess(pid_t id) : id_(id) {}
    ~PosixProcess() override { PosixProcess::Kill(); }

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

private:
    const pid_t id_;
    bool reaped_ = false;
    bool killed_ = false;
};

// This process's environment, with the encoding UTF-8 where it sets none, as on many servers:
// programs read file names and the paths in their arguments in this encoding.
std::vector<std::string> Utf8Environment() {
    const char* encoding = "";
    for (const char* name : {"LANG", "LC_CTYPE", "LC_ALL"}) {
        if (const char* value = getenv(name); value && *value) encoding = value;
    }
    const std::string_view locale = encoding;
    const bool is_utf8 = locale.find("UTF-8") != std::string_view::npos ||
                         locale.find("utf8") != std::string_view::npos;
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable) {
        if (is_utf8 || !std::string_view(*variable).starts_with("LC_ALL=")) {
            variables.emplace_back(*variable);
        }
    }
    if (!is_utf8) variables.emplace_back("LC_ALL=C.UTF-8");
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

// Whether a started program ends with this one or lives on.
enum class Life { kBound, kOwn };

// Runs in the new process, where only calls that are safe after fork are allowed. Returns only when
// the program cannot be started.
void BecomeProgram(char* const* command, char* const* environment, Life life, pid_t parent) {
    if (life == Life::kOwn) {
        setsid();
        if (fork() != 0) _exit(0);  // the system's first process adopts it
    } else {
        setpgid(0, 0);
#ifdef __linux__
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(1);  // it has ended already
#else
        (void)parent;
#endif
    }
    const int nothing = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
    signal(SIGPIPE, SIG_DFL);
    // The raised priority is for this program only.
    if (getpriority(PRIO_PROCESS, 0) < 0) setpriority(PRIO_PROCESS, 0, 0);
    execve(command[0], command, environment);
}

bool IsExecutable(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

// The id of the new process, or nothing when the program cannot be started. With Life::kOwn it is
// the id of a process that has already ended.
std::optional<pid_t> Spawn(const std::string& executable, const std::vector<std::string>& arguments,
                           Life life) {
    std::vector<std::string> command = arguments;
    command.insert(command.begin(), executable);
    const std::vector<char*> words = Pointers(command);
    const std::vector<std::string> variables = Utf8Environment();
    const std::vector<char*> environment = Pointers(variables);

    // A successful exec closes this pipe without a byte in it.
    std::array<int, 2> failure{};
    if (pipe(failure.data()) != 0) return std::nullopt;
    for (const int end : failure) fcntl(end, F_SETFD, FD_CLOEXEC);
    const pid_t parent = getpid();
    const pid_t id = fork();
    if (id == 0) {
        BecomeProgram(words.data(), environment.data(), life, parent);
        const char failed = 1;
        [[maybe_unused]] const auto written = write(failure[1], &failed, 1);
        _exit(127);
    }
    close(failure[1]);
    char failed = 0;
    ssize_t got = 0;
    do {
        got = id < 0 ? 1 : read(failure[0], &failed, 1);
    } while (got < 0 && errno == EINTR);
    close(failure[0]);
    if (id < 0) return std::nullopt;
    if (life == Life::kOwn || got != 0) waitpid(id, nullptr, 0);
    return got == 0 ? std::optional(id) : std::nullopt;
}

volatile std::sig_atomic_t interrupted = 0;

}  // namespace

std::unique_ptr<Process> PosixProcesses::Start(const std::string& executable,
                                               const std::vector<std::string>& arguments) {
    const auto id = Spawn(executable, arguments, Life::kBound);
    return id ? std::make_unique<PosixProcess>(*id) : nullptr;
}

bool PosixProcesses::Launch(const std::string& executable,
                            const std::vector<std::string>& arguments) {
    return Spawn(executable, arguments, Life::kOwn).has_value();
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
    std::string folder = Environment("TMPDIR");
    if (folder.empty()) folder = "/tmp";
    folder += "/tamrin-" + std::string(6, 'X');  // mkdtemp replaces them
    return mkdtemp(folder.data()) ? folder : "";
}

void PosixProcesses::RemoveTemporaryFolder(const std::string& folder) {
    if (folder.empty()) return;
    // Programs that were just killed may still be writing their last file into it.
    for (int attempt = 0; attempt < 20; ++attempt) {
        std::error_code error;
        std::filesystem::remove_all(folder, error);
        if (!error && !std::filesystem::exists(folder, error)) return;
        usleep(10000);
    }
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

void PosixProcesses::CatchInterrupt() {
    struct sigaction action{};
    action.sa_handler = [](int /*signal*/) { interrupted = 1; };
    action.sa_flags = SA_RESETHAND;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool PosixProcesses::Interrupted() { return interrupted != 0; }

}  // namespace tamrin
