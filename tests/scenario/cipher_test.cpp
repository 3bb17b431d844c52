#include "scenario/cipher.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"

namespace tamrin {
namespace {

const std::string kGolden = TAMRIN_SOURCE_DIR "/tests/scenario/golden/";

// The golden line was made by another implementation, filler by the same Mersenne twister from 1.
TEST(EncipherText, MakesTheLineThatEarlierFilesHold) {
    std::mt19937 filler(1);
    const std::string line =
        EncipherText(FileBytes(kGolden + "plain.csv"), kScenarioCipherParameter, filler);
    EXPECT_EQ("CIPHER\r\n" + line + "\r\n", FileBytes(kGolden + "enciphered.csv"));
}

TEST(EncipherText, MakesOneLineOfTheAlphabetWithAnotherFillerEachTime) {
    const std::string text = "a\tb\r\nc\r\n";
    const std::string line = EncipherText(text, kScenarioCipherParameter);
    EXPECT_EQ(line.size(), 2 * text.size() + 100);
    EXPECT_EQ(line.find_first_not_of(kCipherAlphabet), line.npos);
    EXPECT_NE(line, EncipherText(text, kScenarioCipherParameter));
}

TEST(DecipherText, NeedsTheSameParameter) {
    const std::string line = EncipherText("abcdef", kScenarioCipherParameter);
    EXPECT_NE(DecipherText(line, 1), "abcdef");
}

}  // namespace
}  // namespace tamrin
