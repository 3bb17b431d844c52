#include "scenario/player_payload.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

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

TEST(MakePlayer, AppendsTheScenarioAndTheTrailerToAMarkedProgram) {
    for (const ProgramKind kind : kProgramKinds) {
        const std::string program = SampleProgram(kind);
        const bool is_linux = kind == ProgramKind::kLinux;
        std::string expected = program;
        expected.replace(is_linux ? 9 : 0x28, 7, "TAMRIN\x01");
        if (!is_linux) PutNumber(expected, kPeChecksum, 0, 4);
        expected += std::string("123456789\n\n\n\n\x46\xAA\xD1\x8B\x0D\0\0\0\0\0\0\0\1\0\0\0", 29);
        EXPECT_EQ(MakePlayer(program, "123456789"), expected + "TAMRINPL");
        EXPECT_EQ(Read(program).carried, Carried::kNothing);
        for (std::size_t size = 0; size < 10; ++size) {
            const auto player = MakePlayer(program, std::string(size, 'x'));
            EXPECT_EQ(player->size() % 8, 0U);
            EXPECT_EQ(ScenarioOf(*player), std::string(size, 'x'));
            EXPECT_EQ(MakePlayer(*player, kText), MakePlayer(program, kText)) << "of a player";
        }
    }
}

TEST(ReadPayload, TellsWhatIsWrongWithAPlayer) {
    const std::string program = SampleProgram(ProgramKind::kWindows64);
    const std::string player = *MakePlayer(program, kText);
    const std::size_t end = player.size();
    const std::size_t trailer = end - 24;
    // The player with a number written over a part of it.
    const auto with = [&](std::size_t at, std::uint64_t number, std::size_t size) {
        std::string bytes = player;
        PutNumber(bytes, at, number, size);
        return bytes;
    };
    using enum Carried;
    const std::tuple<const char*, std::string, Carried> rows[] = {
        {"empty", "", kNothing},
        {"ELF alone", "\177ELF", kNothing},
        {"no PE", with(0x3C, 0xFFFFFFFF, 4), kChanged},
        {"whole", player, kScenario},
        {"last byte cut", player.substr(0, end - 1), kCut},
        {"all after the program cut", player.substr(0, program.size()), kCut},
        {"more after it", player + "x", kCut},
        {"mark changed", with(0x28, 'x', 1), kChanged},
        {"scenario changed", with(trailer - 9, 'x', 1), kChanged},
        {"a part missing", std::string(player).erase(trailer - 8, 8), kChanged},
        {"length beyond the file", with(trailer + 4, end, 8), kChanged},
        {"length beyond any", with(trailer + 4, ~std::uint64_t{0}, 8), kChanged},
        {"version 0", with(trailer + 12, 0, 4), kChanged},
        {"a later version", with(trailer + 12, 2, 4), kNewer},
    };
    for (const auto& [what, bytes, carried] : rows) {
        EXPECT_EQ(Read(bytes).carried, carried) << what;
        const bool makes_players = bytes == player || bytes == with(0x28, 'x', 1);
        EXPECT_EQ(MakePlayer(bytes, kText).has_value(), makes_players) << what;
    }
    EXPECT_EQ(ReadPayload(MemoryFiles(), "none").carried, kNothing);
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
