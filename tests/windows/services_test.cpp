#include <gtest/gtest.h>
#include <windows.h>

#include "platform/windows/clock.h"
#include "platform/windows/executables.h"
#include "platform/windows/files.h"
#include "platform/windows/handle.h"
#include "platform/windows/processes.h"
#include "platform/windows/wide.h"

namespace tamrin::test {
namespace {

TEST(WindowsFiles, RefusesToReplaceAFileThatIsReadOnlyOrHeld) {
    WindowsProcesses processes;
    WindowsFiles files;
    const std::string folder = processes.MakeTemporaryFolder();
    const std::string path = folder + "\\注文.csv";
    ASSERT_TRUE(files.Replace(path, "old"));
    const auto refuses = [&] {
        return !files.Replace(path, "new") && files.Read(path) == "old" &&
               files.List(folder, "") == std::vector<std::string>{"注文.csv"};
    };
    SetFileAttributesW(Wide(path).c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(refuses());
    SetFileAttributesW(Wide(path).c_str(), FILE_ATTRIBUTE_NORMAL);
    {
        const OwnedHandle held = OwnFile(CreateFileW(
            Wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_TRUE(refuses());
        EXPECT_FALSE(files.Delete(path));
    }
    EXPECT_FALSE(refuses());
    processes.RemoveTemporaryFolder(folder);
    EXPECT_FALSE(files.IsFolder(folder));
}

TEST(QuoteArgument, IsReadBackByTheProgramAsItWas) {
    const struct {
        const wchar_t* argument;
        const wchar_t* quoted;
    } rows[] = {
        {L"plain", L"plain"},
        {L"", L"\"\""},
        {L"C:\\a b\\", L"\"C:\\a b\\\\\""},
        {L"say \"x\"", L"\"say \\\"x\\\"\""},
        {L"C:\\a\\b", L"C:\\a\\b"},
        {L"\\\" ", L"\"\\\\\\\" \""},
    };
    for (const auto& row : rows) EXPECT_EQ(QuoteArgument(row.argument), row.quoted);
}

TEST(WindowsProcesses, EndsAProgramWithAllThatItStarted) {
    WindowsProcesses processes;
    const std::string shell = processes.FindExecutable("cmd");
    ASSERT_NE(shell, "");
    EXPECT_EQ(processes.FindExecutable("no-such-program"), "");
    EXPECT_EQ(processes.Start("C:\\no such.exe", {}), nullptr);

    auto quick = processes.Start(shell, {"/c", "exit"});
    ASSERT_TRUE(quick);
    for (int i = 0; i < 500 && quick->Running(); ++i) Sleep(10);
    EXPECT_FALSE(quick->Running());

    const auto slow = processes.Start(shell, {"/c", "ping -n 60 127.0.0.1"});
    ASSERT_TRUE(slow);
    EXPECT_TRUE(slow->Running());
    slow->Kill();
    EXPECT_FALSE(slow->Running());
}

TEST(TestEnvironment, HasTheJapaneseCodePage) { EXPECT_EQ(GetACP(), 932U); }

}  // namespace
}  // namespace tamrin::test
