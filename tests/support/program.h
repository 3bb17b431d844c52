#pragma once

#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace tamrin::test {

// A program running as a child of the test; it does not outlive the object.
class Program {
public:
    // The words of `command` hold no quotation mark (').
    explicit Program(const std::vector<std::string>& command) {
        std::string line = "echo $$; exec 2>&1";
        for (const std::string& word : command) line += " '" + word + "'";
        pipe_ = popen(line.c_str(), "re");
        Prints("\n");
        id_ = std::stoi(std::exchange(output_, ""));
    }
    ~Program() {
        Signal(SIGTERM);  // not SIGKILL, so that it ends what it has started
        Wait();
    }
    Program(const Program&) = delete;

    // Reads on until the output holds `text`; false when the output ends before that.
    bool Prints(const std::string& text) {
        while (output_.find(text) == std::string::npos) {
            const int byte = pipe_ ? std::fgetc(pipe_) : EOF;
            if (byte == EOF) return false;
            output_ += static_cast<char>(byte);
        }
        return true;
    }

    // Waits for its end. Its exit code, or 1000 and the signal that ended it.
    int Wait() {
        if (!pipe_) return 0;
        Prints(std::string(1, '\0'));
        const int status = pclose(std::exchange(pipe_, nullptr));
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    }

    void Signal(int signal) const {
        if (pipe_) kill(id_, signal);
    }

    // The first process that it has started; 0 when there is none.
    pid_t Child() const {
        const std::string id = std::to_string(id_);
        pid_t child = 0;
        std::ifstream("/proc/" + id + "/task/" + id + "/children") >> child;
        return child;
    }

    // What it has printed on both outputs.
    const std::string& output() const { return output_; }

private:
    std::FILE* pipe_ = nullptr;
    pid_t id_ = 0;
    std::string output_;
};

}  // namespace tamrin::test
