#include "recorder/recovery_file.h"

#include <gtest/gtest.h>

#include "platform/posix/text_codec.h"
#include "support/memory_files.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;
using Contents = std::map<std::string, std::string>;

class RecoveryFileTest : public testing::Test {
protected:
    std::unique_ptr<RecoveryFile> NewFile() { return std::make_unique<RecoveryFile>(files, codec); }
    std::optional<Lines> TakeOver() { return NewFile()->TakeOver(); }

    PosixTextCodec codec;
    MemoryFiles files;
    const std::string path = "C:\\tamrin\\Recovery.csv";
    const std::string path2 = "C:\\tamrin\\Recovery 2.csv";
};

TEST_F(RecoveryFileTest, GivesBackTheLinesOfACrash) {
    for (const bool cipher : {false, true}) {
        for (const Lines& before : {Lines{}, Lines{"url\t,indt=page", "// 前"}}) {
            const auto file = NewFile();
            EXPECT_TRUE(file->Append("nothing is kept yet"));
            file->Begin(file->DefaultPath(), before, cipher);
            EXPECT_EQ(files.contents.size(), before.empty() ? 0U : 1U);
            Lines expected = before;
            for (const char* line : {"input\t,id=a,indt=髙\x01😀", "click\t,id=b"}) {
                EXPECT_TRUE(file->Append(line));
                expected.emplace_back(line);
                // What a crash leaves at any moment is whole.
                MemoryFiles crashed;
                crashed.contents = files.contents;
                EXPECT_EQ(RecoveryFile(crashed, codec).TakeOver(), expected) << cipher;
            }
            EXPECT_EQ(files.contents.at(path).find("click") == std::string::npos, cipher);
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
    EXPECT_EQ(TakeOver(), std::nullopt);
    EXPECT_EQ(files.contents, (Contents{{path, "a\r\n"}, {path2, "c\r\n"}}));
    // Each is offered once its program is gone, and by one of the others.
    second.reset();
    const auto third = NewFile();
    EXPECT_EQ(third->TakeOver(), Lines{"c"});
    first.reset();
    EXPECT_EQ(TakeOver(), Lines{"a"});
    third->Remove();
    NewFile()->Begin(path, {"new"}, false);
    EXPECT_EQ(files.contents, (Contents{{path, "a\r\n"}, {path2, "new\r\n"}}));
}

TEST_F(RecoveryFileTest, SaysWhatItCannotKeep) {
    files.full_disk = true;
    const auto file = NewFile();
    file->Begin(path, {}, false);
    EXPECT_FALSE(file->Append("x"));
    EXPECT_EQ(file->TakeOver(), std::nullopt);
    // All numbers are in use.
    files.full_disk = false;
    std::vector<std::unique_ptr<RecoveryFile>> running;
    for (int i = 1; i <= 10; ++i) {
        running.push_back(NewFile());
        running.back()->Begin(path, {}, false);
        EXPECT_EQ(running.back()->Append("x"), i < 10);
    }
    running.back()->Remove();
    EXPECT_EQ(files.contents.size(), 9U);
}

}  // namespace
}  // namespace tamrin::test
