#include "scenario/scenario_text.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"
#include "platform/posix/text_codec.h"
#include "platform/utf8.h"
#include "scenario/cipher.h"

namespace tamrin {
namespace {

const PosixTextCodec codec;

std::string RandomText(RandomBytes& random, std::size_t most) {
    return random.Text(most, {"\r\n", "\r", "\n", "CIPHER", "%", "%%U+", "41", "1F600", "%%",
                              "日本", "\x93\xFA", "😀", "〜", "\xEF\xBB\xBF"});
}

TEST(ReadScenarioText, MakesValidLinesOfAnyFile) {
    RandomBytes random;
    for (int round = FuzzRounds(2000); round > 0; --round) {
        const std::string text = RandomText(random, 200);
        std::string file;
        const std::size_t kind = random.Below(4);
        if (kind == 0) file = "\xEF\xBB\xBF";
        if (kind >= 2) file = "CIPHER\r\n";
        if (kind == 3) file.append(EncipherText(text, kScenarioCipherParameter)).append("\r\n");
        file += text;
        const auto lines = ReadScenarioText(file, codec);
        for (const std::string& line : lines) ASSERT_EQ(line, ValidUtf8(line));
        // Whatever was read is written and read back the same.
        for (const bool cipher : {false, true}) {
            ASSERT_EQ(ReadScenarioText(WriteScenarioText(lines, codec, cipher), codec), lines);
        }
    }
}

TEST(WriteScenarioText, TakesAnyLines) {
    RandomBytes random;
    for (int round = FuzzRounds(1000); round > 0; --round) {
        std::vector<std::string> lines(random.Below(5));
        for (std::string& line : lines) line = RandomText(random, 60);
        std::vector<std::string> valid(lines.size());
        std::transform(lines.begin(), lines.end(), valid.begin(), ValidUtf8);
        for (const bool cipher : {false, true}) {
            ASSERT_EQ(ReadScenarioText(WriteScenarioText(lines, codec, cipher), codec), valid);
        }
    }
}

}  // namespace
}  // namespace tamrin
