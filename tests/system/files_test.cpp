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
    ~FilesTest() override {
        processes->RemoveTemporaryFolder(folder);
        EXPECT_FALSE(files->IsFolder(folder));
    }

    std::string At(const std::string& name) const { return folder + files->Separator() + name; }

    Names List(const std::string& at, std::string_view extension) const {
        Names names = files->List(at, extension);
        std::ranges::sort(names);
        return names;
    }

    const std::unique_ptr<Processes> processes = MakeProcesses();
    const std::unique_ptr<Files> files = MakeFiles();
    const std::string folder;
    const std::string path = At("注文①表.csv");
    const std::string nowhere = At("none") + files->Separator() + "a.csv";
};

TEST_F(FilesTest, WritesAndReadsBytesAsTheyAre) {
    const std::string bytes("ab\r\n\0\x1A\xFFh", 8);
    for (const std::string& content : {std::string(), std::string(3000000, 'x'), bytes}) {
        EXPECT_TRUE(files->Replace(path, content));
        EXPECT_TRUE(files->Read(path) == content) << content.size();
    }
    const struct {
        std::uint64_t offset;
        std::size_t size;
        std::string part;
    } rows[] = {{0, 2, "ab"},
                {3, 3, bytes.substr(3, 3)},
                {6, 100, bytes.substr(6)},
                {8, 1, ""},
                {1000, 5, ""},
                {3, 0, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(files->ReadPart(path, row.offset, row.size), row.part) << row.offset;
    }
    EXPECT_TRUE(files->Append(path, bytes));
    EXPECT_EQ(files->Read(path), bytes + bytes);
    EXPECT_TRUE(files->Append(At("new"), bytes));
    EXPECT_EQ(files->Read(At("new")), bytes);
    EXPECT_EQ(List(folder, ""), (Names{"new", "注文①表.csv"}));
}

TEST_F(FilesTest, TellsFilesFoldersAndNeitherApart) {
    ASSERT_TRUE(files->Replace(path, "12345678"));
    const struct {
        std::string path;
        bool file;
        bool folder;
    } rows[] = {
        {path, true, false}, {folder, false, true}, {At("none"), false, false}, {"", false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(files->IsFile(row.path), row.file);
        EXPECT_EQ(files->IsFolder(row.path), row.folder);
        EXPECT_EQ(files->Read(row.path).has_value(), row.file);
        EXPECT_EQ(files->ReadPart(row.path, 0, 1).has_value(), row.file);
        EXPECT_EQ(files->Size(row.path).value_or(0), row.file ? 8U : 0U);
    }
}

TEST_F(FilesTest, LeavesNothingBehindWhereItCannotWrite) {
    for (const std::string& refused : {folder, nowhere, std::string()}) {
        SCOPED_TRACE(refused);
        EXPECT_FALSE(files->Replace(refused, "new"));
        EXPECT_FALSE(files->Append(refused, "new"));
        EXPECT_FALSE(files->Lock(refused));
    }
    EXPECT_FALSE(files->MakeFolder(nowhere));
    EXPECT_EQ(List(folder, ""), Names{});
}

TEST_F(FilesTest, MakesFoldersAndDeletesFiles) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(files->MakeFolder(At("既定.csv")));
        EXPECT_TRUE(files->IsFolder(At("既定.csv")));
    }
    for (const char* name : {"b.csv", "A.CSV", "c.csvx", "d.tamrin", "csv", "あ.Csv"}) {
        ASSERT_TRUE(files->Replace(At(name), ""));
    }
    EXPECT_EQ(List(folder, ".csv"), (Names{"A.CSV", "b.csv", "あ.Csv"}));
    EXPECT_EQ(List(At("none"), ".csv"), Names{});
    EXPECT_FALSE(files->MakeFolder(At("b.csv")));
    EXPECT_FALSE(files->Delete(At("既定.csv")));
    EXPECT_TRUE(files->IsFolder(At("既定.csv")));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(files->Delete(At("b.csv")));
        EXPECT_FALSE(files->IsFile(At("b.csv")));
    }
}

TEST_F(FilesTest, LocksAPathOnceAtATime) {
    for (int i = 0; i < 2; ++i) {
        const auto lock = files->Lock(At("a.lock"));
        EXPECT_TRUE(lock);
        EXPECT_FALSE(files->Lock(At("a.lock")));
        EXPECT_TRUE(files->Lock(At("b.lock")));
        EXPECT_EQ(List(folder, ""), Names{"a.lock"});
    }
    EXPECT_EQ(List(folder, ""), Names{});
}

TEST_F(FilesTest, KnowsTheRunningProgram) {
    const std::string own = processes->OwnExecutable();
    EXPECT_TRUE(files->IsFile(own));
    EXPECT_EQ(own.substr(0, own.rfind(files->Separator())), files->ProgramFolder());
    EXPECT_TRUE(files->IsFolder(files->CurrentFolder()));
    EXPECT_TRUE(processes->IsRunning(own));
    const std::string copy = At("写し.exe");
    ASSERT_TRUE(files->Replace(copy, *files->Read(own)));
    for (const std::string& other : {copy, folder, At("none")}) {
        EXPECT_FALSE(processes->IsRunning(other)) << other;
    }
    processes->AllowRunning(copy);
    EXPECT_TRUE(processes->Start(copy, {"--gtest_list_tests"}));
}

}  // namespace
}  // namespace tamrin::test
