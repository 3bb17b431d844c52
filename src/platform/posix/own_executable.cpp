#include "platform/posix/own_executable.h"

#include <unistd.h>

#include <array>
#include <climits>

namespace tamrin {

std::string OwnExecutable() {
    std::array<char, PATH_MAX> target;
    const ssize_t length = readlink("/proc/self/exe", target.data(), target.size());
    return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : "";
}

}  // namespace tamrin
