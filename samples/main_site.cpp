// tamrin-site [port]: serves the sample order form until it is interrupted or ended.

#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "samples/sample_site.h"
#include "samples/web_server.h"

namespace {

constexpr unsigned short kPort = 8631;  // the one that order.csv opens

// The port that the command line names; false when it names none that there can be.
bool ReadPort(int argc, char** argv, unsigned short& port) {
    if (argc < 2) return true;
    const char* end = argv[1] + std::strlen(argv[1]);
    const auto [stop, error] = std::from_chars(argv[1], end, port);
    return argc == 2 && error == std::errc() && stop == end;
}

}  // namespace

int main(int argc, char** argv) {
    unsigned short port = kPort;
    if (!ReadPort(argc, argv, port)) {
        std::fprintf(stderr, "usage: tamrin-site [port]   (0 takes a free one; default %d)\n",
                     kPort);
        return 2;
    }

    // Held back before the server's thread starts, so that it is this thread that receives them.
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);

    tamrin::SampleSite site(TAMRIN_SITE_FOLDER);
    try {
        const tamrin::WebServer server([&](const auto& request) { return site.Answer(request); },
                                       port);
        std::printf("%s\n", server.Url("/").c_str());
        std::fflush(stdout);
        int signal = 0;
        sigwait(&ends, &signal);
        return 0;
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "tamrin-site: port %d: %s\n", port, error.what());
        return 1;
    }
}
