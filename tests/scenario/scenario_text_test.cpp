#include "scenario/scenario_text.h"

#include <gtest/gtest.h>

#include "platform/posix/text_codec.h"
#include "scenario/cipher.h"
#include "support/temporary_folder.h"

namespace tamrin {
namespace {

using Lines = std::vector<std::string>;

const PosixTextCodec codec;

const std::string kGolden = TAMRIN_SOURCE_DIR "/tests/scenario/golden/";

std::string Enciphered(std::string_view bytes) {
    return EncipherText(bytes, kScenarioCipherParameter) + "\r\n";
}

// Another implementation made the golden line, with filler of the same Mersenne twister from 1.
TEST(EncipherText, MakesTheLineThatEarlierFilesHold) {
    std::mt19937 filler(1);
    const std::string plain = FileBytes(kGolden + "plain.csv");
    const std::string line = EncipherText(plain, kScenarioCipherParameter, filler);
    EXPECT_EQ("CIPHER\r\n" + line + "\r\n", FileBytes(kGolden + "enciphered.csv"));
    EXPECT_NE(line, EncipherText(plain, kScenarioCipherParameter)) << "the filler is random";
}

TEST(ReadScenarioText, ReadsPlainAndEncipheredFilesAlike) {
    const std::string plain = FileBytes(kGolden + "plain.csv");
    const Lines lines = ReadScenarioText(plain, codec);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[1], "//\t,id=,type=,indt=氏名を入れる ①②髙﨑～ｶﾅ");
    EXPECT_EQ(lines[2] + lines[4], "input\t,id=name,type=text,indt=山田　太郎\x01様");
    EXPECT_EQ(ReadScenarioText(FileBytes(kGolden + "enciphered.csv"), codec), lines);
    EXPECT_EQ(WriteScenarioText(lines, codec, false), plain);
}

TEST(ReadScenarioText, SplitsAtAnyLineEndAndDeciphersEachLineByItself) {
    const std::pair<std::string, Lines> rows[] = {
        {"", {}},
        {"a\rb\r\r\nc\r\n", {"a", "b", "", "c"}},
        {"\uFEFF日本\r\n\xFF", {"日本", "\uFFFD"}},
        {"\x93\xFA\x96\r\n\x7B", {"日\uFFFD", "{"}},  // half a character ends its own line only
        {"a\r\nCIPHER\r\nb", {"a", "CIPHER", "b"}},
        {std::string("a\0b", 3), {std::string("a\0b", 3)}},
        {"CIPHER\r\n", {}},
        {"\uFEFFCIPHER\n" + Enciphered("a\r\nb\r\n"), {"a", "b"}},
        {"CIPHER\r\n" + Enciphered("a\r\n") + Enciphered("") + Enciphered("b"), {"a", "", "b"}},
    };
    for (const auto& [bytes, lines] : rows) {
        EXPECT_EQ(ReadScenarioText(bytes, codec), lines) << bytes;
    }
}

TEST(WriteScenarioText, EscapesWhatTheFileCannotHold) {
    const std::pair<std::string, std::string> rows[] = {
        {"\U0001F600 ", "%%U+1F600%% "},
        {"日\u301C本", "\x93\xFA%%U+301C%%\x96\x7B"},  // would come back as another wave dash
        {"a\rb\nc", "a%%U+D%%b%%U+A%%c"},
        {std::string("\0", 1), "%%U+0%%"},
        {"%%U+41%%", "%%U+25%%%U+41%%"},
        {"%%%U+%%U+", "%%%U+25%%%U+%%U+25%%%U+"},
        {"%%DBLQ%% CIPHERED 5%", "%%DBLQ%% CIPHERED 5%"},
        {"\uFEFFx", "%%U+FEFF%%x"},
        {"CIPHER", "%%U+43%%IPHER"},
    };
    for (const auto& [line, written] : rows) {
        const Lines lines = {line, "CIPHER"};
        const std::string bytes = WriteScenarioText(lines, codec, false);
        EXPECT_EQ(bytes, written + "\r\nCIPHER\r\n");
        EXPECT_EQ(ReadScenarioText(bytes, codec), lines);
    }
    EXPECT_EQ(WriteScenarioText({"a\xE6\x97\xFF"}, codec, false),
              "a%%U+FFFD%%%%U+FFFD%%%%U+FFFD%%\r\n");
}

TEST(ScenarioTextLines, LeavesWhatOnlyResemblesAnEscape) {
    EXPECT_EQ(ScenarioTextLines("日%%U+672c%%\r\n%%U+%%U+41%%%%U+42%%"), (Lines{"日本", "%%U+AB"}));
    for (const char* text : {"%%U+", "%%U+%%", "%%U+4", "%%U+41%", "%%U+D800%%", "%%U+110000%%",
                             "%%U+0000041%%", "%%U+-1%%", "%%U+ 41%%", "%%u+41%%", "%%U+0x41%%"}) {
        EXPECT_EQ(ScenarioTextLines(text), Lines{text});
    }
}

}  // namespace
}  // namespace tamrin
