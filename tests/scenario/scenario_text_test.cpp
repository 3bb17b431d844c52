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
    const Lines lines = {
        "url\t,id=,size_bar=0.0.1024.768.11110,indt=http://localhost/会員登録.html",
        "//\t,id=,type=,indt=氏名を入れる ①②髙﨑～ｶﾅ",
        "input\t,id=name,type=text,indt=山田　太郎\x01様",
        "input\t,id=memo,type=textarea,indt=一行目\x02二行目 ソ表能",
        "",
        "click\t,id=send,type=submit,indt=送信",
    };
    EXPECT_EQ(ReadScenarioText(FileBytes(kGolden + "plain.csv"), codec), lines);
    EXPECT_EQ(ReadScenarioText(FileBytes(kGolden + "enciphered.csv"), codec), lines);
    EXPECT_EQ(WriteScenarioText(lines, codec, false), FileBytes(kGolden + "plain.csv"));
}

TEST(ReadScenarioText, SplitsAtAnyLineEnd) {
    const struct {
        std::string_view bytes;
        Lines lines;
    } rows[] = {
        {"", {}},
        {"\r\n", {""}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb", {"a", "b"}},
        {"a\rb\r\r\nc", {"a", "b", "", "c"}},
        {"a\n\r\n\n", {"a", "", ""}},
        {"\uFEFF日本\r\n\xFF", {"日本", "\uFFFD"}},
        {"\uFEFF", {}},
        {"\x93\xFA\x96\r\n\x7B", {"日\uFFFD", "{"}},  // half a character ends its own line only
        {"a\r\nCIPHER\r\nb", {"a", "CIPHER", "b"}},
        {"cipher\r\nb", {"cipher", "b"}},
        {"CIPHER \r\nb", {"CIPHER ", "b"}},
        {std::string_view("a\0b", 3), {std::string("a\0b", 3)}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ReadScenarioText(row.bytes, codec), row.lines) << row.bytes;
    }
}

TEST(ReadScenarioText, DeciphersEachLineByItself) {
    const struct {
        std::string below_mark;
        Lines lines;
    } rows[] = {
        {"", {}},
        {Enciphered(""), {}},
        {Enciphered("a\r\nb\r\n"), {"a", "b"}},
        {Enciphered("a\r\n") + Enciphered("") + Enciphered("b"), {"a", "", "b"}},
        {Enciphered("a") + Enciphered(""), {"a", ""}},
        {Enciphered("a\r\n\r\n") + "\r\n", {"a", ""}},
    };
    for (const auto& row : rows) {
        for (const char* mark : {"CIPHER\r\n", "\uFEFFCIPHER\n"}) {
            EXPECT_EQ(ReadScenarioText(mark + row.below_mark, codec), row.lines) << row.below_mark;
        }
    }
}

TEST(WriteScenarioText, EscapesWhatTheFileCannotHold) {
    const struct {
        std::string line;
        std::string_view written;
    } rows[] = {
        {"\U0001F600 ", "%%U+1F600%% "},
        {"日\u301C本", "\x93\xFA%%U+301C%%\x96\x7B"},  // would come back as another wave dash
        {"¥100", "%%U+A5%%100"},
        {"a\rb\nc", "a%%U+D%%b%%U+A%%c"},
        {std::string("\0", 1), "%%U+0%%"},
        {"%%U+41%%", "%%U+25%%%U+41%%"},
        {"%%%U+%%U+", "%%%U+25%%%U+%%U+25%%%U+"},
        {"%%DBLQ%% 5%", "%%DBLQ%% 5%"},
        {"\uFEFFx", "%%U+FEFF%%x"},
        {"CIPHER", "%%U+43%%IPHER"},
        {"CIPHERED", "CIPHERED"},
    };
    for (const auto& row : rows) {
        const Lines lines = {row.line, "CIPHER"};
        const std::string bytes = WriteScenarioText(lines, codec, false);
        EXPECT_EQ(bytes, std::string(row.written) + "\r\nCIPHER\r\n");
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
