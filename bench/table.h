#pragma once

#include <chrono>
#include <cstdio>

namespace tamrin {

// Prints measured values beside their limits, a row each, and remembers whether one was missed.
class Table {
public:
    Table() { std::printf("%-48s %12s %12s\n", "what", "measured", "limit"); }

    // A value that must stay below `limit`, both in `unit`.
    void Row(const char* what, double measured, double limit, const char* unit) {
        const bool kept = measured < limit;
        std::printf("%-48s %9.3f %-2s %9.3f %-2s  %s\n", what, measured, unit, limit, unit,
                    kept ? "ok" : "MISSED");
        std::fflush(stdout);
        all_kept_ = all_kept_ && kept;
    }

    // What main answers: 0 when every limit was kept.
    int ExitCode() const { return all_kept_ ? 0 : 1; }

private:
    bool all_kept_ = true;
};

// How long `work` takes, in seconds: the best of three, for whatever else the machine does only
// adds to it.
template <typename Work>
double BestSeconds(Work work) {
    double best = 0;
    for (int i = 0; i < 3; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        if (i == 0 || seconds.count() < best) best = seconds.count();
    }
    return best;
}

}  // namespace tamrin
