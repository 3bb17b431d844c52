#include <gtest/gtest.h>
#include <io.h>

#include <array>

#include "platform/chromium/devtools_channel.h"
#include "platform/windows/processes.h"

namespace tamrin::test {
namespace {

// What the test below starts: answers what it hears until it hears nothing any more.
TEST(Pipe, DISABLED_Answers) {
    std::array<char, 4096> bytes;
    for (int n = 1; n > 0;) {
        n = _read(3, bytes.data(), bytes.size());
        if (n > 0) _write(4, bytes.data(), n);
    }
}

TEST(Pipe, ReachesAProgramThatEndsWithItUnlessItOutlivesThisOne) {
    WindowsProcesses processes;
    const std::string long_text(200000, 'x');
    for (const bool outlives : {false, true}) {
        const auto process = processes.Start(
            {.executable = processes.OwnExecutable(),
             .arguments = {"--gtest_also_run_disabled_tests", "--gtest_filter=*.DISABLED_Answers"},
             .outlives = outlives,
             .piped = true});
        auto channel = OpenPipe(process->TakePipe());
        for (const std::string& text : {std::string("{}"), long_text, std::string("値")}) {
            channel->Send(text);
            std::string answer;
            while (!channel->Next(answer) && process->Running()) channel->Wait(50);
            EXPECT_TRUE(answer == text) << answer.size();
        }
        channel.reset();
        for (int i = 0; i < (outlives ? 20 : 1000) && process->Running(); ++i) Sleep(10);
        EXPECT_EQ(process->Running(), outlives);
        process->Kill();
    }
}

}  // namespace
}  // namespace tamrin::test
