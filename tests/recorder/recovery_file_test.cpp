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
                EXPECT_EQ(RecoveryFile(files, codec).TakeOver(), expected) << cipher;
            }
            const std::string& bytes = files.contents.at("C:\\tamrin\\Recovery.csv");
            EXPECT_EQ(bytes.find("click") == std::string::npos, cipher);
            file.Remove();
            EXPECT_TRUE(files.contents.empty());
        }
    }
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
}

}  // namespace
}  // namespace tamrin::test
