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

TEST(MakePlayer, RefusesWhatIsNoWholeProgram) {
    const std::string player = *MakePlayer(SampleProgram(ProgramKind::kLinux), kText);
    std::string no_pe = SampleProgram(ProgramKind::kWindows64);
    PutNumber(no_pe, 0x3C, 0xFFFFFFFF, 4);
    const std::string rows[] = {"",
                                "MZ",
                                "\177ELF",
                                "text",
                                no_pe,
                                player.substr(0, player.size() - 1),
                                Flipped(player, player.size() - kTrailer - 3),
                                Flipped(player, player.size() - kTrailer + 5)};
    for (const std::string& program : rows) {
        EXPECT_FALSE(MakePlayer(program, kText)) << program.substr(0, 8);
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
    for (const char* bytes : {"", "MZ", "\177ELF"}) {
        EXPECT_EQ(Read(bytes).carried, Carried::kNothing) << bytes;
    }
}

TEST(ReadPayload, TellsWhatIsWrongWithAPlayer) {
    const std::string program = SampleProgram(ProgramKind::kWindows64);
    const std::string player = *MakePlayer(program, kText);
    const std::size_t trailer = player.size() - kTrailer;
    const auto with_number = [&](std::size_t at, std::uint64_t number, std::size_t size) {
        std::string bytes = player;
        PutNumber(bytes, trailer + at, number, size);
        return bytes;
    };
    const struct {
        const char* what;
        std::string bytes;
        Carried carried;
    } rows[] = {
        {"whole", player, Carried::kScenario},
        {"last byte cut", player.substr(0, player.size() - 1), Carried::kCut},
        {"trailer cut", player.substr(0, trailer), Carried::kCut},
        {"everything after the program cut", player.substr(0, program.size()), Carried::kCut},
        {"cut in the program", player.substr(0, 1000), Carried::kCut},
        {"more after it", player + "x", Carried::kCut},
        {"name changed", Flipped(player, player.size() - 1), Carried::kCut},
        {"mark changed", Flipped(player, 0x28), Carried::kChanged},
        {"scenario changed", Flipped(player, trailer - 9), Carried::kChanged},
        {"some of it missing", std::string(player).erase(trailer - 8, 8), Carried::kChanged},
        {"checksum changed", Flipped(player, trailer), Carried::kChanged},
        {"length longer", with_number(4, 25, 8), Carried::kChanged},
        {"length beyond the file", with_number(4, player.size(), 8), Carried::kChanged},
        {"length beyond any", with_number(4, ~std::uint64_t{0}, 8), Carried::kChanged},
        {"version 0", with_number(12, 0, 4), Carried::kChanged},
        {"a later version", with_number(12, 2, 4), Carried::kNewer},
    };
    for (const auto& row : rows) EXPECT_EQ(Read(row.bytes).carried, row.carried) << row.what;
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
