#include "platform/posix/system_clock.h"

#include <time.h>

#include <cerrno>

namespace tamrin {

std::uint32_t SystemClock::TickCount() const {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000U +
                                      static_cast<std::uint64_t>(now.tv_nsec) / 1000000U);
}

std::string SystemClock::TimeStamp() const {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    char text[32] = "";
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

void SystemClock::Sleep(int milliseconds) {
    if (milliseconds <= 0) return;
    timespec left{milliseconds / 1000, (milliseconds % 1000) * 1000000L};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

void SystemClock::DoEvents() {
    // By index: a source may register another one.
    for (std::size_t i = 0; i < sources_.size(); ++i) sources_[i]();
}

}  // namespace tamrin
