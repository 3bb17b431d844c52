#include "recorder/recovery_file.h"

#include <gtest/gtest.h>

#include <deque>

#include "platform/posix/text_codec.h"
#include "support/memory_files.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;
using Contents = std::map<std::string, std::string>;

class RecoveryFileTest : public testing::Test {
protected:
    std::unique_ptr<RecoveryFile> NewFile() { return std::make_unique<RecoveryFile>(files, codec); }

    PosixTextCodec codec;
    MemoryFiles files;
    const std::string path = "C:\\tamrin\\Recovery.csv";
    const std::string path2 = "C:\\tamrin\\Recovery 2.csv";
};

TEST_F(RecoveryFileTest, GivesBackTheLinesOfACrash) {
    for (const bool cipher : {false, true}) {
        for (Lines lines : {Lines{}, Lines{"url\t,indt=page", "// 前"}}) {
            auto file = NewFile();
            EXPECT_TRUE(file->Append("nothing is kept yet"));
            file->Begin(RecoveryFile::DefaultPath(files), lines, cipher);
            EXPECT_EQ(files.contents.size(), lines.empty() ? 0U : 1U);
            for (const char* line : {"input\t,id=a,indt=髙\x01😀", "click\t,id=b"}) {
                EXPECT_TRUE(file->Append(line));
                lines.emplace_back(line);
            }
            EXPECT_EQ(files.contents.at(path).find("click") == std::string::npos, cipher);
            file = NewFile();
            EXPECT_EQ(file->TakeOver(), lines) << cipher;
            file->Remove();
            EXPECT_TRUE(files.contents.empty());
        }
    }
}

TEST_F(RecoveryFileTest, LeavesAloneWhatBelongsToAnotherProgramOrWaitsForItsUser) {
    auto first = NewFile();
    auto second = NewFile();
    first->Begin(path, {}, false);
    EXPECT_TRUE(first->Append("a"));
    EXPECT_EQ(second->TakeOver(), std::nullopt);
    second->Begin(path, {"b"}, false);
    second->Begin(path, {"c"}, false);
    EXPECT_EQ(files.contents, (Contents{{path, "a\r\n"}, {path2, "c\r\n"}}));
    // Each is offered once its program is gone, and by one of the others.
    second.reset();
    const auto third = NewFile();
    EXPECT_EQ(third->TakeOver(), Lines{"c"});
    first.reset();
    EXPECT_EQ(NewFile()->TakeOver(), Lines{"a"});
    third->Remove();
    NewFile()->Begin(path, {"new"}, false);
    EXPECT_EQ(files.contents, (Contents{{path, "a\r\n"}, {path2, "new\r\n"}}));
}

TEST_F(RecoveryFileTest, SaysWhatItCannotKeep) {
    files.full_disk = true;
    std::deque<RecoveryFile> running;
    for (int i = 1; i <= 10; ++i) {  // one more than there are numbers
        running.emplace_back(files, codec).Begin(path, {}, false);
        EXPECT_FALSE(running.back().Append("x"));
    }
    files.full_disk = false;
    for (auto& file : running) EXPECT_EQ(file.Append("x"), &file != &running.back());
    running.back().Remove();
    EXPECT_EQ(files.contents.size(), 9U);
}

}  // namespace
}  // namespace tamrin::test
