#pragma once

#include <unistd.h>

#include <utility>

namespace tamrin {

// Owns a file descriptor; false when it holds none.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }

    // Closes it now; false when the system reports that something written was lost.
    bool Close() {
        const int number = std::exchange(number_, -1);
        return number < 0 || close(number) == 0;
    }

private:
    int number_;
};

}  // namespace tamrin
