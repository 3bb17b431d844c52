#include "scenario/player_payload.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

constexpr std::size_t kTrailer = 24;
const std::string kText = "CIPHER\r\n=:*Vd";

Payload Read(const std::string& program) {
    MemoryFiles files;
    files.contents["p"] = program;
    return ReadPayload(files, "p");
}

// The scenario that a player carries, without its padding.
std::string ScenarioOf(const std::string& program) {
    const std::string scenario = Read(program).scenario;
    return scenario.substr(0, scenario.find_last_not_of('\n') + 1);
}

std::string Flipped(std::string bytes, std::size_t at) {
    bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
    return bytes;
}

TEST(MakePlayer, AppendsTheScenarioAndTheTrailerToAMarkedProgram) {
    for (const ProgramKind kind : kProgramKinds) {
        const std::string program = SampleProgram(kind);
        const bool is_linux = kind == ProgramKind::kLinux;
        std::string expected = program;
        expected.replace(is_linux ? 9 : 0x28, 7, "TAMRIN\x01");
        if (!is_linux) PutNumber(expected, kPeChecksum, 0, 4);
        expected += std::string("123456789\n\n\n\n\x46\xAA\xD1\x8B\x0D\0\0\0\0\0\0\0\1\0\0\0", 29);
        EXPECT_EQ(MakePlayer(program, "123456789"), expected + "TAMRINPL");
        for (std::size_t size = 0; size < 10; ++size) {
            const auto player = MakePlayer(program, std::string(size, 'x'));
            EXPECT_EQ(player->size() % 8, 0U);
            EXPECT_EQ(ScenarioOf(*player), std::string(size, 'x'));
            EXPECT_EQ(MakePlayer(*player, kText), MakePlayer(program, kText)) << "of a player";
        }
    }
}

TEST(ReadPayload, ReadsOnlyTheEndsOfAnOrdinaryProgram) {
    MemoryFiles files;
    for (const ProgramKind kind : kProgramKinds) {
        files.contents["p"] = SampleProgram(kind).append(1000000, 'b');
        EXPECT_EQ(ReadPayload(files, "p").carried, Carried::kNothing);
    }
    EXPECT_LE(*std::ranges::max_element(files.parts), 4096U);
    EXPECT_EQ(ReadPayload(files, "none").carried, Carried::kNothing);
}

TEST(ReadPayload, TellsWhatIsWrongWithAPlayer) {
    const std::string program = SampleProgram(ProgramKind::kWindows64);
    const std::string player = *MakePlayer(program, kText);
    const std::size_t trailer = player.size() - kTrailer;
    const auto with_number = [](std::string bytes, std::size_t at, std::uint64_t number,
                                std::size_t size) {
        PutNumber(bytes, at, number, size);
        return bytes;
    };
    const struct {
        const char* what;
        std::string bytes;
        Carried carried;
        bool makes_players;
    } rows[] = {
        {"empty", "", Carried::kNothing, false},
        {"DOS alone", "MZ", Carried::kNothing, false},
        {"ELF alone", "\177ELF", Carried::kNothing, false},
        {"no PE", with_number(program, 0x3C, 0xFFFFFFFF, 4), Carried::kNothing, false},
        {"whole", player, Carried::kScenario, true},
        {"last byte cut", player.substr(0, player.size() - 1), Carried::kCut, false},
        {"trailer cut", player.substr(0, trailer), Carried::kCut, false},
        {"all after the program cut", player.substr(0, program.size()), Carried::kCut, false},
        {"cut in the program", player.substr(0, 1000), Carried::kCut, false},
        {"more after it", player + "x", Carried::kCut, false},
        {"name changed", Flipped(player, player.size() - 1), Carried::kCut, false},
        {"mark changed", Flipped(player, 0x28), Carried::kChanged, true},
        {"scenario changed", Flipped(player, trailer - 9), Carried::kChanged, false},
        {"a part missing", std::string(player).erase(trailer - 8, 8), Carried::kChanged, false},
        {"checksum changed", Flipped(player, trailer), Carried::kChanged, false},
        {"length longer", with_number(player, trailer + 4, 25, 8), Carried::kChanged, false},
        {"length beyond the file", with_number(player, trailer + 4, player.size(), 8),
         Carried::kChanged, false},
        {"length beyond any", with_number(player, trailer + 4, ~std::uint64_t{0}, 8),
         Carried::kChanged, false},
        {"version 0", with_number(player, trailer + 12, 0, 4), Carried::kChanged, false},
        {"a later version", with_number(player, trailer + 12, 2, 4), Carried::kNewer, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Read(row.bytes).carried, row.carried) << row.what;
        EXPECT_EQ(MakePlayer(row.bytes, kText).has_value(), row.makes_players) << row.what;
    }
}

TEST(ReadPayload, FindsTheScenarioBeforeASignature) {
    for (const ProgramKind kind : {ProgramKind::kWindows32, ProgramKind::kWindows64}) {
        const std::string program = SampleProgram(kind);
        const std::string player = *MakePlayer(program, kText);
        const std::string after = Signed(player, kind);
        EXPECT_EQ(after.size(), player.size() + 800) << "no padding before the signature";
        EXPECT_EQ(ScenarioOf(after), kText);
        EXPECT_EQ(Read(after.substr(0, after.size() - 1)).carried, Carried::kCut);
        EXPECT_EQ(Read(Signed(program, kind)).carried, Carried::kNothing);
        // A signed player, or program, makes a player without a signature.
        EXPECT_EQ(MakePlayer(after, kText), player);
        EXPECT_EQ(MakePlayer(Signed(program, kind), kText),
                  MakePlayer(program + std::string(5, '\0'), kText));
    }
}

}  // namespace
}  // namespace tamrin::test
