#include "recorder/recovery_file.h"

#include <gtest/gtest.h>

#include "platform/posix/text_codec.h"
#include "support/memory_files.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

TEST(RecoveryFile, GivesBackTheLinesOfACrash) {
    PosixTextCodec codec;
    for (const bool cipher : {false, true}) {
        for (const Lines& before : {Lines{}, Lines{"url\t,indt=page", "// 前"}}) {
            MemoryFiles files;
            RecoveryFile file(files, codec);
            file.Begin(file.DefaultPath(), before, cipher);
            EXPECT_EQ(files.contents.empty(), before.empty());
            Lines expected = before;
            for (const char* line : {"input\t,id=a,indt=髙\x01😀", "click\t,id=b"}) {
                EXPECT_TRUE(file.Append(line));
                expected.emplace_back(line);
                // What a crash leaves at any moment is whole.
                MemoryFiles crashed;
                crashed.contents = files.contents;
                EXPECT_EQ(RecoveryFile(crashed, codec).TakeOver(), expected) << cipher;
            }
            const std::string& bytes = files.contents.at("C:\\tamrin\\Recovery.csv");
            EXPECT_EQ(bytes.find("click") == std::string::npos, cipher);
            file.Remove();
            EXPECT_TRUE(files.contents.empty());
        }
    }
}

TEST(RecoveryFile, LeavesThatOfARunningProgramAlone) {
    PosixTextCodec codec;
    MemoryFiles files;
    const std::string path = RecoveryFile(files, codec).DefaultPath();
    auto first = std::make_unique<RecoveryFile>(files, codec);
    auto second = std::make_unique<RecoveryFile>(files, codec);
    first->Begin(path, {}, false);
    EXPECT_TRUE(first->Append("a"));
    EXPECT_EQ(second->TakeOver(), std::nullopt);
    second->Begin(path, {"b"}, false);
    second->Begin(path, {"c"}, false);
    EXPECT_EQ(RecoveryFile(files, codec).TakeOver(), std::nullopt);
    EXPECT_EQ(files.contents, (std::map<std::string, std::string>{
                                  {path, "a\r\n"}, {"C:\\tamrin\\Recovery 2.csv", "c\r\n"}}));
    // Each is offered once its program is gone, and by one of the others.
    second.reset();
    RecoveryFile third(files, codec);
    EXPECT_EQ(third.TakeOver(), Lines{"c"});
    first.reset();
    EXPECT_EQ(RecoveryFile(files, codec).TakeOver(), Lines{"a"});
    third.Remove();
    EXPECT_EQ(files.contents.size(), 1U);
}

TEST(RecoveryFile, LeavesWhatWaitsForItsUserAlone) {
    PosixTextCodec codec;
    MemoryFiles files;
    const std::string path = RecoveryFile(files, codec).DefaultPath();
    files.contents[path] = "crashed\r\n";
    {
        RecoveryFile file(files, codec);
        file.Begin(path, {"new"}, false);
    }
    EXPECT_EQ(RecoveryFile(files, codec).TakeOver(), Lines{"crashed"});
    EXPECT_EQ(files.contents["C:\\tamrin\\Recovery 2.csv"], "new\r\n");
}

TEST(RecoveryFile, SaysWhatItCannotKeep) {
    PosixTextCodec codec;
    MemoryFiles files;
    files.full_disk = true;
    RecoveryFile file(files, codec);
    EXPECT_TRUE(file.Append("nothing is kept yet"));
    file.Begin(file.DefaultPath(), {}, false);
    EXPECT_FALSE(file.Append("x"));
    EXPECT_EQ(file.TakeOver(), std::nullopt);
    // All numbers are in use.
    MemoryFiles crowded;
    std::vector<std::unique_ptr<RecoveryFile>> running;
    for (int i = 0; i < 9; ++i) {
        running.push_back(std::make_unique<RecoveryFile>(crowded, codec));
        running.back()->Begin(file.DefaultPath(), {}, false);
        EXPECT_TRUE(running.back()->Append("x"));
    }
    RecoveryFile one_more(crowded, codec);
    one_more.Begin(file.DefaultPath(), {"y"}, false);
    EXPECT_FALSE(one_more.Append("y"));
    one_more.Remove();
    EXPECT_EQ(crowded.contents.size(), 9U);
}

}  // namespace
}  // namespace tamrin::test
