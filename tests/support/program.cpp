#include "support/program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

namespace tamrin::test {

Program::Program(const std::vector<std::string>& command) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    id_ = fork();
    if (id_ == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    close(ends[1]);
    pipe_ = ends[0];
}

Program::~Program() {
    if (id_ > 0) {
        // Gently first, so that it ends what it has started itself.
        Signal(SIGTERM);
        Wait();
    }
    close(pipe_);
}

bool Program::ReadMore(int limit_ms) {
    pollfd readable{pipe_, POLLIN, 0};
    if (poll(&readable, 1, limit_ms) <= 0) return false;
    char block[4096];
    const ssize_t size = read(pipe_, block, sizeof block);
    if (size > 0) output_.append(block, static_cast<std::size_t>(size));
    return size > 0;
}

bool Program::Prints(const std::string& text) {
    while (output_.find(text) == std::string::npos) {
        if (!ReadMore(60000)) return false;
    }
    return true;
}

int Program::Wait() {
    while (ReadMore(120000)) {
    }
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

void Program::Signal(int signal) const { kill(id_, signal); }

pid_t Program::Child() const {
    const std::string id = std::to_string(id_);
    std::ifstream children("/proc/" + id + "/task/" + id + "/children");
    pid_t child = 0;
    children >> child;
    return child;
}

}  // namespace tamrin::test
