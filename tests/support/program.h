#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tamrin::test {

// A program running as a child of the test, what it prints kept. It does not outlive the object.
class Program {
public:
    explicit Program(const std::vector<std::string>& command);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Reads on until the output holds `text`; false when it ends, or a minute passes, before that.
    bool Prints(const std::string& text);

    // Waits for its end. Its exit code, or 1000 and the signal that ended it.
    int Wait();

    void Signal(int signal) const;

    // The first process that it has started; 0 when there is none.
    pid_t Child() const;

    // What it has printed on both outputs.
    const std::string& output() const { return output_; }

private:
    bool ReadMore(int limit_ms);

    pid_t id_ = 0;
    int pipe_ = -1;
    std::string output_;
};

}  // namespace tamrin::test
