#pragma once

#include <unistd.h>

#include <utility>

namespace tamrin {

// Owns a file descriptor; false when it holds none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        Close();
        number_ = other.Release();
        return *this;
    }

    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }
    int Release() { return std::exchange(number_, -1); }

    // Closes it now; false when the system reports that something written was lost.
    bool Close() {
        const int number = Release();
        return number < 0 || close(number) == 0;
    }

private:
    int number_;
};

}  // namespace tamrin
