#include "platform/posix/interrupt.h"

#include <csignal>
#include <initializer_list>

namespace tamrin {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void Remember(int /*signal*/) { interrupted = 1; }

}  // namespace

void CatchInterrupt() {
    struct sigaction action{};
    action.sa_handler = Remember;
    action.sa_flags = SA_RESETHAND;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

bool Interrupted() { return interrupted != 0; }

}  // namespace tamrin
