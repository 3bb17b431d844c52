#include "app/command_line.h"

#include <gtest/gtest.h>

#include "app/paths.h"
#include "app/settings.h"
#include "fuzz/random_bytes.h"
#include "support/memory_files.h"

namespace tamrin {
namespace {

TEST(CommandLineFuzz, EverySwitchIsAPieceOfTheLine) {
    RandomBytes random;
    const test::MemoryFiles files;
    for (int round = FuzzRounds(20000); round > 0; --round) {
        const std::string line = random.Text(
            60, {" -", "　-", "a ", "stream ", "%SPC%", "%SPC-%", "\"", " ", "　", "..\\", "\\"});
        for (const Switch& item : SplitSwitches(line)) {
            EXPECT_TRUE(item.text.starts_with(item.name)) << line;
            EXPECT_EQ(CollapseBlanks(item.text), item.text) << line;
            EXPECT_LE(item.text.size(), line.size()) << line;
            const std::string path = StripQuotes(SwitchValue(item));
            const std::string resolved = ResolvePath(path, "C:\\b", files);
            EXPECT_EQ(ResolvePath(resolved, "C:\\other", files), resolved) << line;
            IsExistingFile(path, files);
        }
        EXPECT_LE(DecodeStream(line).size(), line.size());
    }
}

TEST(SettingsFuzz, EverySettingStandsOnALineWithOneEqualsSign) {
    RandomBytes random;
    for (int round = FuzzRounds(20000); round > 0; --round) {
        const std::string text =
            random.Text(100, {"=", "\r\n", "\n", " ", "form left = ", "BROWSER", "x"});
        ForEachSetting(text, [&](const std::string& key, std::string_view value) {
            EXPECT_EQ(key.find('='), std::string::npos) << text;
            EXPECT_EQ(value.find('='), std::string_view::npos) << text;
            EXPECT_FALSE(value.starts_with(' ')) << text;
            EXPECT_EQ(value.find('\n'), std::string_view::npos) << text;
        });
    }
}

}  // namespace
}  // namespace tamrin
