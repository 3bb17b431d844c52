#include "scenario/scenario_file.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

TEST(DeleteScenarioFile, TriesAgainForFiveSeconds) {
    const struct {
        std::uint64_t locked_ms;
        bool deleted;
        std::uint64_t took_ms;
    } rows[] = {{0, true, 0}, {5, true, 10}, {4990, true, 4990}, {5000, false, 5000}};
    for (const auto& row : rows) {
        MemoryFiles files;
        VirtualClock clock;
        files.contents["a.csv"] = "x";
        if (row.locked_ms > 0) files.locked = {"a.csv"};
        clock.At(row.locked_ms, [&] { files.locked.clear(); });
        EXPECT_EQ(DeleteScenarioFile(files, clock, "a.csv"), row.deleted) << row.locked_ms;
        EXPECT_EQ(files.contents.empty(), row.deleted) << row.locked_ms;
        EXPECT_EQ(clock.Elapsed(), row.took_ms);
    }
}

}  // namespace
}  // namespace tamrin::test
