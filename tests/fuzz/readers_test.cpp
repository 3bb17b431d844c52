// Every reader of foreign text takes any text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "app/command_line.h"
#include "app/paths.h"
#include "app/settings_file.h"
#include "platform/posix/text_codec.h"
#include "platform/utf8.h"
#include "player/input_data.h"
#include "player/key_string.h"
#include "scenario/cipher.h"
#include "scenario/player_payload.h"
#include "scenario/record.h"
#include "scenario/scenario_text.h"
#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

using Words = std::vector<std::string_view>;

// Random texts, the same ones in every run.
class Generator {
public:
    std::size_t Below(std::size_t limit) { return random_() % limit; }

    // A text of about `limit` bytes at most. Every other one consists of random bytes, the others
    // mostly of `words`, which bring them near to what the reader expects.
    std::string Text(std::size_t limit, const Words& words) {
        std::string text;
        const bool takes_words = Below(2) == 0;
        for (const std::size_t size = Below(limit + 1); text.size() < size;) {
            if (takes_words && Below(4) != 0) {
                text += words[Below(words.size())];
            } else {
                text += static_cast<char>(Below(256));
            }
        }
        return text;
    }

private:
    std::mt19937 random_;
};

const PosixTextCodec codec;

void ExpectWrittenAndReadBack(const std::vector<std::string>& lines,
                              const std::vector<std::string>& read) {
    for (const bool cipher : {false, true}) {
        EXPECT_EQ(ReadScenarioText(WriteScenarioText(lines, codec, cipher), codec), read);
    }
}

void Decipher(const std::string& text, Generator& random) {
    static std::mt19937 filler;
    const int parameter = static_cast<int>(random.Below(0xFFFFFFFF));
    EXPECT_EQ(DecipherText(EncipherText(text, parameter, filler), parameter), text);
    EXPECT_EQ(DecipherText(text, parameter).size(),
              std::max<std::size_t>(text.size() / 2, 50) - 50);
}

void ReadScenario(const std::string& text, Generator& random) {
    const std::string before[] = {
        "", "\uFEFF", "CIPHER\r\n",
        "CIPHER\r\n" + EncipherText(text, kScenarioCipherParameter) + "\r\n"};
    const auto lines = ReadScenarioText(before[random.Below(4)] + text, codec);
    for (const std::string& line : lines) EXPECT_EQ(line, ValidUtf8(line));
    ExpectWrittenAndReadBack(lines, lines);
    ExpectWrittenAndReadBack({text, "CIPHER", text}, {ValidUtf8(text), "CIPHER", ValidUtf8(text)});
}

void ReadRecord(const std::string& line, Generator& /*random*/) {
    for (const char* key : {"", "Act", "ｉｄ", "type", "id=", "=", "id,id"}) {
        EXPECT_EQ(GetRecordItem(line, key).find_first_of(",\t"), std::string::npos) << key;
    }
    const Record record = ParseRecord(line);
    EXPECT_EQ(record.act, GetRecordItem(line, "Act"));
    EXPECT_EQ(record.id, GetRecordItem(line, "id"));
    EXPECT_EQ(record.type, GetRecordItem(line, "type"));
    const std::string value = DecodeItemValue(line);
    EXPECT_EQ(DecodeItemValue(EncodeItemValue(value)), value);
}

// A damaged player is never taken for one with another scenario.
void ReadPlayer(const std::string& text, Generator& random) {
    MemoryFiles files;
    std::string& bytes = files.contents["p"];
    bytes = *MakePlayer(SampleProgram(kProgramKinds[random.Below(3)]), text);
    for (std::size_t damage = random.Below(4); damage > 0 && !bytes.empty(); --damage) {
        // Mostly in the headers or near the end.
        const std::size_t near = random.Below(std::min<std::size_t>(300, bytes.size()));
        const std::size_t places[] = {random.Below(bytes.size()), near, bytes.size() - 1 - near};
        const std::size_t at = places[random.Below(3)];
        if (random.Below(4) == 0) bytes.resize(at);
        if (at < bytes.size()) bytes[at] = static_cast<char>(random.Below(256));
    }
    const Payload payload = ReadPayload(files, "p");
    EXPECT_TRUE(payload.carried != Carried::kScenario || payload.scenario.starts_with(text));
    if (const auto next = MakePlayer(bytes, "next")) {
        bytes = *next;
        EXPECT_TRUE(ReadPayload(files, "p").scenario.starts_with("next"));
    }
}

void ReadCommandLine(const std::string& line, Generator& /*random*/) {
    const MemoryFiles files;
    for (const Switch& item : SplitSwitches(line)) {
        EXPECT_TRUE(item.text.starts_with(item.name));
        EXPECT_EQ(CollapseBlanks(item.text), item.text);
        EXPECT_LE(item.text.size(), line.size());
        const std::string path = StripQuotes(SwitchValue(item));
        const std::string resolved = ResolvePath(path, "C:\\b", files);
        EXPECT_EQ(ResolvePath(resolved, "C:\\other", files), resolved);
        IsExistingFile(path, files);
    }
    EXPECT_LE(DecodeStream(line).size(), line.size());
}

void ReadSettings(const std::string& text, Generator& /*random*/) {
    Settings settings;
    ReadConf(settings, text);
    Settings again;
    ReadConf(again, WriteConf(settings));
    again.play_count = settings.play_count;  // is not read back
    EXPECT_EQ(WriteConf(again), WriteConf(settings));
    Options options;
    ReadOptions(options, text);
    EXPECT_EQ(options.browser_path.find('\n'), std::string::npos);
}

void ReadKeys(const std::string& text, Generator& /*random*/) {
    std::string why;
    const auto strokes = ParseKeyString(text, why);
    EXPECT_EQ(strokes.has_value(), why.empty());
    for (const KeyStroke& stroke : strokes.value_or(std::vector<KeyStroke>())) {
        EXPECT_NE(stroke.text.empty(), stroke.name.empty()) << "one key";
    }
    std::string plain = text;
    for (char& c : plain) c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95);
    std::string typed;
    const auto plain_strokes = ParseKeyString(KeyStringOf(plain), why);
    for (const KeyStroke& stroke : plain_strokes.value()) typed += stroke.text;
    EXPECT_EQ(typed, plain);
}

void ReadInputData(const std::string& text, Generator& /*random*/) {
    ExpandReservedTexts(text, {[] { return "%%clipboard%%"; }, "%%error%%"});
    EXPECT_LE(FirstToken(text).size(), text.size());
    EXPECT_LE(std::abs(LeadingNumber(text)), 2147483647.0);
    TruthValue(text);
}

const struct {
    const char* name;
    void (*read)(const std::string& text, Generator& random);
    Words words;
} kReaders[] = {
    {"cipher", Decipher, {{"\0", 1}, "V", "N", "\r\n"}},
    {"scenario",
     ReadScenario,
     {"\r\n", "\r", "\n", "CIPHER", "%", "%%U+", "41", "1F600", "%%", "日本", "\x93\xFA", "😀",
      "〜", "\uFEFF"}},
    {"record", ReadRecord, {"\t", ",", "id", "ＩＤ", "Type", "=", "==", "日本"}},
    {"player", ReadPlayer, {"CIPHER\r\n", "TAMRINPL", "\n"}},
    {"command line",
     ReadCommandLine,
     {" -", "　-", "a ", "stream ", "%SPC%", "%SPC-%", "\"", " ", "　", "..\\", "\\"}},
    {"settings", ReadSettings, {"=", "\r\n", "\n", " ", "form left = ", "BROWSER"}},
    {"keys",
     ReadKeys,
     {"{", "}", "(", ")", "+", "^", "%", "~", "{TAB}", "{LEFT 3}", "{あ 2}", "F12", "9"}},
    {"input data",
     ReadInputData,
     {"%%", "%%comma%%", "%%DBLQ%%", "%%error%%", "%%clipboard%%", "\"", " ", "1e999", "-", ".5",
      "true", "99999999999999999999"}},
};

// TAMRIN_FUZZ_FACTOR in the environment multiplies the rounds, for a long run.
TEST(Readers, TakeAnyText) {
    const char* const factor = std::getenv("TAMRIN_FUZZ_FACTOR");
    const int rounds = 3000 * (factor ? std::atoi(factor) : 1);
    for (const auto& reader : kReaders) {
        Generator random;
        for (int round = 0; round < rounds; ++round) {
            const std::string text = random.Text(100, reader.words);
            reader.read(text, random);
            if (HasFailure()) FAIL() << reader.name << ": " << text;
        }
    }
}

}  // namespace
}  // namespace tamrin::test
