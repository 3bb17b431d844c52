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

TEST(DecipherText, AnswersTheSameBytesForEvenAndOddLengths) {
    std::string text;
    for (int length = 0; length < 300; ++length) {
        for (const int parameter : {kScenarioCipherParameter, 1, 2147483647}) {
            EXPECT_EQ(DecipherText(EncipherText(text, parameter), parameter), text) << length;
        }
        text += static_cast<char>(length * 7);
    }
    for (const std::string_view zeros :
         {std::string_view("\0", 1), std::string_view("a\0\0", 3), std::string_view("\0ab\0", 4)}) {
        EXPECT_EQ(
            DecipherText(EncipherText(zeros, kScenarioCipherParameter), kScenarioCipherParameter),
            zeros);
    }
}

TEST(DecipherText, AnswersSomeTextForDamagedLines) {
    for (std::size_t length = 0; length < 110; ++length) {
        const std::string garbage(length, '\xFF');
        const std::size_t size = length < 102 ? 0 : length / 2 - 50;
        EXPECT_EQ(DecipherText(garbage, kScenarioCipherParameter), std::string(size, '\0'));
    }
    const std::string line = EncipherText("abcdef", kScenarioCipherParameter);
    EXPECT_EQ(DecipherText(line.substr(1), kScenarioCipherParameter).size(), 5U);
    EXPECT_NE(DecipherText(line, 1), "abcdef");
}

}  // namespace
}  // namespace tamrin
