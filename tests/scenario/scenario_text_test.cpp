#include "scenario/scenario_text.h"

#include <gtest/gtest.h>

#include "platform/posix/text_codec.h"
#include "scenario/cipher.h"
#include "support/temporary_folder.h"

namespace tamrin {
namespace {

using Lines = std::vector<std::string>;

const PosixTextCodec codec;

std::string Enciphered(std::string_view bytes) {
    return EncipherText(bytes, kScenarioCipherParameter) + "\r\n";
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
    const std::string golden = TAMRIN_SOURCE_DIR "/tests/scenario/golden/";
    EXPECT_EQ(ReadScenarioText(FileBytes(golden + "plain.csv"), codec), lines);
    EXPECT_EQ(ReadScenarioText(FileBytes(golden + "enciphered.csv"), codec), lines);
    EXPECT_EQ(WriteScenarioText(lines, codec, false), FileBytes(golden + "plain.csv"));
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
        {"\xEF\xBB\xBF"
         "日本\r\n\xFF",
         {"日本", "\uFFFD"}},
        {"\xEF\xBB\xBF", {}},
        {"\x93\xFA\x96\r\n\x7B", {"日\uFFFD", "{"}},  // half a character ends its own line only
        {"a\r\nCIPHER\r\nb", {"a", "CIPHER", "b"}},
        {"cipher\r\nb", {"cipher", "b"}},
        {"CIPHER \r\nb", {"CIPHER ", "b"}},
        {std::string_view("a\0b", 3), {std::string("a\0b", 3)}},
    };
    for (const auto& row : rows) EXPECT_EQ(ReadScenarioText(row.bytes, codec), row.lines);
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
        EXPECT_EQ(ReadScenarioText("CIPHER\r\n" + row.below_mark, codec), row.lines);
        EXPECT_EQ(ReadScenarioText("\xEF\xBB\xBF"
                                   "CIPHER\n" +
                                       row.below_mark,
                                   codec),
                  row.lines);
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
        const std::string bytes = WriteScenarioText({row.line, "CIPHER"}, codec, false);
        EXPECT_EQ(bytes, std::string(row.written) + "\r\nCIPHER\r\n");
        EXPECT_EQ(ReadScenarioText(bytes, codec), (Lines{row.line, "CIPHER"}));
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
