// The readers of scenarios, records, players and keys take any text.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>

#include "platform/posix/text_codec.h"
#include "platform/utf8.h"
#include "player/key_string.h"
#include "scenario/cipher.h"
#include "scenario/player_payload.h"
#include "scenario/record.h"
#include "scenario/scenario_text.h"
#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;
using Words = std::vector<std::string_view>;

// Each day has other texts; the environment may name the day, in days since 1970.
const char* const named_day = std::getenv("TAMRIN_FUZZ_DAY");
const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
const long day = named_day ? std::atol(named_day) : today.time_since_epoch().count();
std::mt19937 generator(static_cast<unsigned>(day));

std::size_t Below(std::size_t limit) { return generator() % limit; }

char RandomByte() { return static_cast<char>(Below(256)); }

// A text of about 100 bytes at most. Every other one consists of random bytes, the others mostly of
// `words`, which bring them near to what the reader expects.
std::string RandomText(const Words& words) {
    std::string text;
    const bool takes_words = Below(2) == 0;
    for (const std::size_t size = Below(101); text.size() < size;) {
        const bool word = takes_words && Below(4) != 0;
        text += word ? std::string(words[Below(words.size())]) : std::string(1, RandomByte());
    }
    return text;
}

const PosixTextCodec codec;

void ReadScenario(const std::string& text) {
    const std::string before[] = {
        "", "\uFEFF", "CIPHER\r\n",
        "CIPHER\r\n" + EncipherText(text, kScenarioCipherParameter) + "\r\n"};
    const auto lines = ReadScenarioText(before[Below(4)] + text, codec);
    const std::string valid = ValidUtf8(text);
    for (const bool cipher : {false, true}) {
        EXPECT_EQ(ReadScenarioText(WriteScenarioText(lines, codec, cipher), codec), lines);
        const std::string bytes = WriteScenarioText({text, "CIPHER", text}, codec, cipher);
        EXPECT_EQ(ReadScenarioText(bytes, codec), (Lines{valid, "CIPHER", valid}));
    }
}

void ReadRecord(const std::string& line) {
    for (const char* key : {"", "id=", "=", "id,id"}) {
        EXPECT_EQ(GetRecordItem(line, key).find_first_of(",\t"), std::string::npos) << key;
    }
    EXPECT_EQ(ParseRecord(line).id, GetRecordItem(line, "iD"));
    const std::string value = DecodeItemValue(line);
    EXPECT_EQ(DecodeItemValue(EncodeItemValue(value)), value);
}

// A damaged player is never taken for one with another scenario.
void ReadPlayer(const std::string& text) {
    MemoryFiles files;
    std::string& bytes = files.contents["p"];
    bytes = *MakePlayer(SampleProgram(kProgramKinds[Below(3)]), text);
    for (std::size_t damage = Below(4); damage > 0 && !bytes.empty(); --damage) {
        // Mostly in the headers or near the end.
        const std::size_t near = Below(std::min<std::size_t>(300, bytes.size()));
        const std::size_t places[] = {Below(bytes.size()), near, bytes.size() - 1 - near};
        const std::size_t at = places[Below(3)];
        bytes[at] = RandomByte();
        if (Below(4) == 0) bytes.resize(at);
    }
    const Payload payload = ReadPayload(files, "p");
    EXPECT_TRUE(payload.carried != Carried::kScenario || payload.scenario.starts_with(text));
    bytes = MakePlayer(bytes, "next").value_or("");
    EXPECT_TRUE(bytes.empty() || ReadPayload(files, "p").scenario.starts_with("next"));
}

void ReadKeys(const std::string& text) {
    std::string why;
    const auto strokes = ParseKeyString(text, why);
    EXPECT_EQ(strokes.has_value(), why.empty());
    std::string plain = text;
    for (char& c : plain) c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95);
    std::string typed;
    const auto plain_strokes = ParseKeyString(KeyStringOf(plain), why);
    for (const KeyStroke& stroke : plain_strokes.value()) typed += stroke.text;
    EXPECT_EQ(typed, plain);
}

const std::pair<void (*)(const std::string& text), Words> kReaders[] = {
    {ReadScenario,
     {"\r\n", "\r", "\n", "CIPHER", "%", "%%U+", "41", "1F600", "%%", "日本", "\x93\xFA",
      "\uFEFF"}},
    {ReadRecord, {"\t", ",", "id", "ＩＤ", "Type", "=", "==", "日本"}},
    {ReadPlayer, {"CIPHER\r\n", "TAMRINPL", "\n"}},
    {ReadKeys, {"{", "}", "(", ")", "+", "^", "%", "~", "{TAB}", "{LEFT 3}", "{あ 2}", "F12"}},
};

// --gtest_repeat goes on with further texts.
TEST(Readers, TakeAnyText) {
    std::cout << "TAMRIN_FUZZ_DAY=" << day << '\n';
    for (const auto& [read, words] : kReaders) {
        for (int round = 3000; round > 0; --round) {
            const std::string text = RandomText(words);
            read(text);
            if (HasFailure()) FAIL() << text;
        }
    }
}

}  // namespace
}  // namespace tamrin::test
