#include "scenario/scenario_file.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/posix/files.h"
#include "platform/posix/text_codec.h"
#include "support/temporary_folder.h"

namespace tamrin {
namespace {

using Lines = std::vector<std::string>;

TEST(WriteScenarioFile, IsReadBackByReadScenarioFile) {
    const TemporaryFolder folder;
    PosixFiles files;
    const PosixTextCodec codec;
    const Lines lines = {"click\t,id=送信", ""};
    for (const bool cipher : {false, true}) {
        EXPECT_TRUE(WriteScenarioFile(files, codec, folder.At("a.csv"), lines, cipher));
        EXPECT_EQ(ReadScenarioFile(files, codec, folder.At("a.csv")), lines);
        EXPECT_EQ(FileBytes(folder.At("a.csv")).starts_with("CIPHER\r\n"), cipher);
    }
    EXPECT_FALSE(WriteScenarioFile(files, codec, folder.At("none/a.csv"), lines, false));
    EXPECT_EQ(ReadScenarioFile(files, codec, folder.At("b.csv")), std::nullopt);
}

// A file that can be deleted only after some pauses; the pauses are counted.
class HeldFile : public PosixFiles, public Clock {
public:
    explicit HeldFile(int pauses) : pauses_(pauses) {}

    bool IsFile(const std::string&) const override { return !gone_; }
    bool Delete(const std::string&) override { return gone_ = slept_ms == 10 * pauses_; }
    std::uint32_t TickCount() const override { return 0; }
    std::string TimeStamp() const override { return ""; }
    void Sleep(int milliseconds) override { slept_ms += milliseconds; }
    void DoEvents() override { ++events; }

    int slept_ms = 0;
    int events = 0;

private:
    int pauses_;
    bool gone_ = false;
};

TEST(DeleteScenarioFile, TriesAgainForFiveSeconds) {
    const struct {
        int pauses;
        bool gone;
        int attempts;
    } rows[] = {{0, true, 0}, {1, true, 1}, {499, true, 499}, {500, false, 500}};
    for (const auto& row : rows) {
        HeldFile file(row.pauses);
        EXPECT_EQ(DeleteScenarioFile(file, file, "a.csv"), row.gone) << row.pauses;
        EXPECT_EQ(file.slept_ms, 10 * row.attempts);
        EXPECT_EQ(file.events, row.attempts);
    }
}

}  // namespace
}  // namespace tamrin
