#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "system/system_under_test.h"

namespace tamrin::test {
namespace {

using Names = std::vector<std::string>;

class FilesTest : public testing::Test {
protected:
    FilesTest() : folder(processes->MakeTemporaryFolder()) {}
    ~FilesTest() override { processes->RemoveTemporaryFolder(folder); }

    std::string At(const std::string& name) const { return folder + files->Separator() + name; }

    Names AllNames() const {
        Names names = files->List(folder, "");
        std::ranges::sort(names);
        return names;
    }

    const std::unique_ptr<Processes> processes = MakeProcesses();
    const std::unique_ptr<Files> files = MakeFiles();
    const std::string folder;
};

TEST_F(FilesTest, ReplacesAFileByBytesAsTheyAre) {
    const std::string path = At("注文①表.csv");
    for (const std::string& bytes : {std::string("a\r\n\0\n\x1A\xFF", 7), std::string(),
                                     std::string(3000000, 'x'), std::string("end")}) {
        EXPECT_TRUE(files->Replace(path, bytes));
        EXPECT_TRUE(files->Read(path) == bytes) << bytes.size();
    }
    EXPECT_EQ(AllNames(), Names{"注文①表.csv"});
}

TEST_F(FilesTest, ReadsAPartOfAFile) {
    const std::string path = At("部分.exe");
    ASSERT_TRUE(files->Replace(path, std::string("ab\0\x1A"
                                                 "efgh",
                                                 8)));
    const struct {
        std::uint64_t offset;
        std::size_t size;
        std::string bytes;
    } rows[] = {
        {0, 2, "ab"}, {1, 3, std::string("b\0\x1A", 3)}, {6, 100, "gh"}, {8, 1, ""}, {1000, 5, ""},
        {3, 0, ""},
    };
    for (const auto& row : rows) EXPECT_EQ(files->ReadPart(path, row.offset, row.size), row.bytes);
    EXPECT_EQ(files->Size(path), 8U);
    for (const std::string& absent : {std::string(), folder, At("none")}) {
        EXPECT_EQ(files->ReadPart(absent, 0, 1), std::nullopt);
        EXPECT_EQ(files->Size(absent), std::nullopt);
    }
}

TEST_F(FilesTest, KnowsTheRunningProgram) {
    const std::string own = processes->OwnExecutable();
    EXPECT_TRUE(files->IsFile(own));
    EXPECT_TRUE(own.starts_with(files->ProgramFolder()));
    EXPECT_TRUE(processes->IsRunning(own));
    const std::string copy = At("写し.exe");
    ASSERT_TRUE(files->Replace(copy, *files->Read(own)));
    for (const std::string& other : {copy, folder, At("none")}) {
        EXPECT_FALSE(processes->IsRunning(other)) << other;
    }
    processes->AllowRunning(copy);
    EXPECT_TRUE(processes->Start(copy, {"--gtest_list_tests"}));
}

TEST_F(FilesTest, AddsBytesAtTheEndOfAFile) {
    const std::string path = At("追記.csv");
    EXPECT_TRUE(files->Append(path, "a\r\n"));
    EXPECT_TRUE(files->Append(path, std::string("\0b", 2)));
    EXPECT_EQ(files->Read(path), std::string("a\r\n\0b", 5));
    EXPECT_FALSE(files->Append(folder, "x"));
    EXPECT_FALSE(files->Append(At("none") + files->Separator() + "a.csv", "x"));
}

TEST_F(FilesTest, LeavesNothingBehindWhenAFileCannotBeWritten) {
    EXPECT_FALSE(files->Replace(folder, "new"));
    EXPECT_FALSE(files->Replace(At("none") + files->Separator() + "a.csv", "new"));
    EXPECT_FALSE(files->Replace("", "new"));
    EXPECT_EQ(AllNames(), Names{});
}

TEST_F(FilesTest, TellsFilesFromFolders) {
    const std::string path = At("a.csv");
    ASSERT_TRUE(files->Replace(path, "x"));
    EXPECT_TRUE(files->IsFile(path));
    EXPECT_FALSE(files->IsFolder(path));
    EXPECT_TRUE(files->IsFolder(folder));
    EXPECT_FALSE(files->IsFile(folder));
    for (const std::string& absent : {std::string(), At("none")}) {
        EXPECT_FALSE(files->IsFile(absent));
        EXPECT_FALSE(files->IsFolder(absent));
        EXPECT_EQ(files->Read(absent), std::nullopt);
    }
    EXPECT_EQ(files->Read(folder), std::nullopt);
}

TEST_F(FilesTest, MakesAFolderInAnExistingOne) {
    EXPECT_TRUE(files->MakeFolder(At("既定")));
    EXPECT_TRUE(files->IsFolder(At("既定")));
    EXPECT_TRUE(files->MakeFolder(At("既定")));
    EXPECT_FALSE(files->MakeFolder(At("none") + files->Separator() + "a"));
    ASSERT_TRUE(files->Replace(At("file"), ""));
    EXPECT_FALSE(files->MakeFolder(At("file")));
}

TEST_F(FilesTest, DeletesOnlyFiles) {
    const std::string path = At("a.csv");
    ASSERT_TRUE(files->Replace(path, "x"));
    EXPECT_TRUE(files->Delete(path));
    EXPECT_FALSE(files->IsFile(path));
    EXPECT_TRUE(files->Delete(path));
    EXPECT_FALSE(files->Delete(folder));
    EXPECT_TRUE(files->IsFolder(folder));
}

TEST_F(FilesTest, LocksAPathOnceAtATime) {
    for (int i = 0; i < 2; ++i) {
        const auto lock = files->Lock(At("a.lock"));
        EXPECT_TRUE(lock);
        EXPECT_FALSE(files->Lock(At("a.lock")));
        EXPECT_TRUE(files->Lock(At("b.lock")));
        EXPECT_EQ(AllNames(), Names{"a.lock"});
    }
    EXPECT_EQ(AllNames(), Names{});
    EXPECT_FALSE(files->Lock(At("none") + files->Separator() + "a.lock"));
    EXPECT_FALSE(files->Lock(folder));
}

TEST_F(FilesTest, ListsTheFilesOfAnExtension) {
    for (const char* name : {"b.csv", "A.CSV", "c.csvx", "d.tamrin", "csv", "あ.Csv"}) {
        ASSERT_TRUE(files->Replace(At(name), ""));
    }
    ASSERT_TRUE(files->MakeFolder(At("folder.csv")));
    Names names = files->List(folder, ".csv");
    std::ranges::sort(names);
    EXPECT_EQ(names, (Names{"A.CSV", "b.csv", "あ.Csv"}));
    EXPECT_EQ(files->List(At("none"), ".csv"), Names{});
}

TEST_F(FilesTest, KnowsWhereTheProgramStands) {
    EXPECT_TRUE(files->IsFolder(files->ProgramFolder()));
    EXPECT_TRUE(files->IsFolder(files->CurrentFolder()));
    EXPECT_NE(files->ProgramFolder().back(), files->Separator());
}

}  // namespace
}  // namespace tamrin::test
