#include "scenario/player_payload.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "scenario/checksum.h"
#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

constexpr std::size_t kTrailer = 24;
constexpr const char* kElf =
    "\x7F"
    "ELF";
const std::string kText = "CIPHER\r\n=:*Vd";

Carried CarriedBy(const std::string& program) {
    MemoryFiles files;
    files.contents["p"] = program;
    return ReadPayload(files, "p").carried;
}

// The scenario that a player carries, without the line ends that fill it up.
std::string ScenarioOf(const std::string& program) {
    MemoryFiles files;
    files.contents["p"] = program;
    const std::string scenario = ReadPayload(files, "p").scenario;
    return scenario.substr(0, scenario.find_last_not_of('\n') + 1);
}

std::string Flipped(std::string bytes, std::size_t at) {
    bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
    return bytes;
}

TEST(Checksum, IsThatOfZipFiles) {
    EXPECT_EQ(Checksum("123456789"), 0xCBF43926U);
    EXPECT_EQ(Checksum(""), 0U);
}

TEST(MakePlayer, KeepsTheProgramAndCarriesTheScenario) {
    for (const ProgramKind kind : kProgramKinds) {
        const std::string program = SampleProgram(kind);
        for (std::size_t size = 0; size < 10; ++size) {
            const auto player = MakePlayer(program, std::string(size, 'x'));
            ASSERT_TRUE(player);
            EXPECT_EQ(player->size() % 8, 0U);
            EXPECT_EQ(player->substr(1024, program.size() - 1024), program.substr(1024));
            EXPECT_EQ(ScenarioOf(*player), std::string(size, 'x'));
        }
    }
}

TEST(MakePlayer, OfAPlayerLeavesItsScenarioOut) {
    for (const ProgramKind kind : kProgramKinds) {
        const std::string program = SampleProgram(kind);
        const auto first = MakePlayer(program, std::string(1000, 'x'));
        EXPECT_EQ(MakePlayer(*first, kText), MakePlayer(program, kText));
    }
}

TEST(MakePlayer, RefusesWhatIsNoWholeProgram) {
    const std::string player = *MakePlayer(SampleProgram(ProgramKind::kLinux), kText);
    std::string no_pe = SampleProgram(ProgramKind::kWindows64);
    PutNumber(no_pe, 0x3C, 0xFFFFFFFF, 4);
    const std::string rows[] = {
        "",
        "MZ",
        kElf,
        "text",
        no_pe,
        player.substr(0, player.size() - 1),
        Flipped(player, player.size() - kTrailer - 3),
        Flipped(player, player.size() - kTrailer + 5),
    };
    for (const std::string& program : rows) EXPECT_FALSE(MakePlayer(program, kText));
}

TEST(ReadPayload, ReadsOnlyTheEndsOfAnOrdinaryProgram) {
    MemoryFiles files;
    for (const ProgramKind kind : kProgramKinds) {
        files.contents["p"] = SampleProgram(kind).append(1000000, 'b');
        EXPECT_EQ(ReadPayload(files, "p").carried, Carried::kNothing);
    }
    EXPECT_LE(*std::ranges::max_element(files.parts), 4096U);
    EXPECT_EQ(ReadPayload(files, "none").carried, Carried::kNothing);
    for (const char* bytes : {"", "MZ", kElf}) {
        EXPECT_EQ(CarriedBy(bytes), Carried::kNothing);
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
        {"cut in the scenario", player.substr(0, trailer - 4), Carried::kCut},
        {"all that is behind the program cut", player.substr(0, program.size()), Carried::kCut},
        {"cut in the program", player.substr(0, 1000), Carried::kCut},
        {"more behind it", player + "x", Carried::kCut},
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
    for (const auto& row : rows) EXPECT_EQ(CarriedBy(row.bytes), row.carried) << row.what;
}

TEST(ReadPayload, FindsTheScenarioInFrontOfASignature) {
    for (const ProgramKind kind : {ProgramKind::kWindows32, ProgramKind::kWindows64}) {
        const std::string program = SampleProgram(kind);
        const std::string player = *MakePlayer(program, kText);
        const std::string after = Signed(player, kind);
        EXPECT_EQ(after.size(), player.size() + 800) << "no filler in front of the signature";
        EXPECT_EQ(ScenarioOf(after), kText);
        for (const std::size_t size : {after.size() - 1, player.size() - 1}) {
            EXPECT_EQ(CarriedBy(after.substr(0, size)), Carried::kCut) << size;
        }
        EXPECT_EQ(CarriedBy(Signed(program, kind)), Carried::kNothing);
        // A signed program, or player, makes one without a signature.
        EXPECT_EQ(ReadNumber(player, kPeChecksum, 4), 0U);
        EXPECT_EQ(MakePlayer(after, kText), player);
        const auto of_signed = MakePlayer(Signed(program, kind), kText);
        EXPECT_EQ(ReadNumber(*of_signed, CertificateEntryOf(kind), 8), 0U);
        EXPECT_EQ(ScenarioOf(*of_signed), kText);
    }
}

}  // namespace
}  // namespace tamrin::test
