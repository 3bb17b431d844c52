#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "system_under_test.h"

namespace tamrin::test {
namespace {

using Names = std::vector<std::string>;

class FilesTest : public testing::Test {
protected:
    ~FilesTest() override {
        processes.RemoveTemporaryFolder(folder);
        EXPECT_FALSE(files.IsFolder(folder));
    }

    std::string At(const std::string& name) const { return folder + files.Separator() + name; }

    Names List(std::string_view extension = "") const {
        Names names = files.List(folder, extension);
        std::ranges::sort(names);
        return names;
    }

    SystemProcesses processes;
    SystemFiles files;
    const std::string folder = processes.MakeTemporaryFolder();
    const std::string path = At("注文①表.csv");
};

TEST_F(FilesTest, WritesAndReadsBytesAsTheyAre) {
    const std::string bytes("ab\r\n\0\x1A\xFFh", 8);
    for (const std::string& content : {std::string(), std::string(3000000, 'x'), bytes}) {
        EXPECT_TRUE(files.Replace(path, content));
        EXPECT_TRUE(files.Read(path) == content) << content.size();
    }
    EXPECT_EQ(files.ReadPart(path, 3, 3), bytes.substr(3, 3));
    EXPECT_EQ(files.ReadPart(path, 6, 100), bytes.substr(6));
    EXPECT_EQ(files.ReadPart(path, 1000, 5), "");
    for (const std::string& before : {bytes, std::string()}) {
        EXPECT_TRUE(files.Append(path, bytes));
        EXPECT_EQ(files.Read(path), before + bytes);
        EXPECT_TRUE(files.Delete(path));
    }
}

TEST_F(FilesTest, TellsFilesFoldersAndNeitherApart) {
    ASSERT_TRUE(files.Replace(path, "12345678"));
    const std::tuple<std::string, bool, bool> rows[] = {
        {path, true, false},
        {folder, false, true},
        {At("none") + files.Separator() + "a.csv", false, false},
        {"", false, false}};
    for (const auto& [place, file, is_folder] : rows) {
        SCOPED_TRACE(place);
        EXPECT_EQ(files.IsFile(place), file);
        EXPECT_EQ(files.IsFolder(place), is_folder);
        EXPECT_EQ(files.Read(place).has_value(), file);
        EXPECT_EQ(files.ReadPart(place, 0, 1).has_value(), file);
        EXPECT_EQ(files.Size(place), file ? std::optional<std::uint64_t>(8) : std::nullopt);
        EXPECT_EQ(files.MakeFolder(place), is_folder);
        if (file) continue;
        EXPECT_FALSE(files.Replace(place, "new"));
        EXPECT_FALSE(files.Append(place, "new"));
        EXPECT_FALSE(files.Lock(place));
    }
    EXPECT_EQ(List(), Names{"注文①表.csv"});
}

TEST_F(FilesTest, MakesFoldersAndDeletesFiles) {
    for (const char* name : {"b.csv", "A.CSV", "c.csvx", "csv", "あ.Csv"}) {
        ASSERT_TRUE(files.Replace(At(name), ""));
    }
    EXPECT_TRUE(files.MakeFolder(path));
    EXPECT_EQ(List(".csv"), (Names{"A.CSV", "b.csv", "あ.Csv"}));
    EXPECT_FALSE(files.Delete(path));
    EXPECT_TRUE(files.Delete(At("none")));
    EXPECT_EQ(files.List(At("none"), ".csv"), Names{});
}

TEST_F(FilesTest, LocksAPathOnceAtATime) {
    for (int i = 0; i < 2; ++i) {
        const auto lock = files.Lock(path);
        EXPECT_TRUE(lock);
        EXPECT_FALSE(files.Lock(path));
        EXPECT_TRUE(files.Lock(At("b.lock")));
        EXPECT_EQ(List(), Names{"注文①表.csv"});
    }
    EXPECT_EQ(List(), Names{});
}

// As when a program is killed: what it has begun is open no longer, and its folder still there.
TEST_F(FilesTest, DeletesTheTemporaryFoldersThatNoProgramHolds) {
    auto killed = std::make_unique<SystemProcesses>();
    const std::string left = killed->MakeTemporaryFolder();
    ASSERT_TRUE(files.Replace(left + files.Separator() + "a", "1"));
    for (const bool stays : {true, false}) {
        processes.RemoveTemporaryFolder(processes.MakeTemporaryFolder());
        EXPECT_EQ(files.IsFolder(left), stays);
        killed.reset();
    }
    EXPECT_TRUE(files.IsFolder(folder));
}

TEST_F(FilesTest, RunsAProgramUntilItEndsOrIsKilled) {
    const std::string own = processes.OwnExecutable();
    EXPECT_EQ(own.substr(0, own.rfind(files.Separator())), files.ProgramFolder());
    EXPECT_TRUE(processes.IsRunning(own));
    ASSERT_TRUE(files.Replace(path, *files.Read(own)));
    for (const std::string& other : {path, folder}) EXPECT_FALSE(processes.IsRunning(other));
    processes.AllowRunning(path);
    const auto endless = processes.Start({path, {"--gtest_filter=-*", "--gtest_repeat=-1"}});
    ASSERT_TRUE(endless);
    // Writes a file into a folder whose name reaches it as an argument.
    const auto brief = processes.Start(
        {path, {"--gtest_filter=-*", "--gtest_output=json:" + At("a  b") + files.Separator()}});
    ASSERT_TRUE(brief);
    while (brief->Running()) {
    }
    EXPECT_EQ(files.List(At("a  b"), ".json").size(), 1U);
    EXPECT_TRUE(endless->Running());
    endless->Kill();
    EXPECT_FALSE(endless->Running());
    EXPECT_EQ(processes.Start({At("none.exe")}), nullptr);
}

}  // namespace
}  // namespace tamrin::test
