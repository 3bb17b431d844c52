#include "scenario/player_payload.h"

#include <gtest/gtest.h>

#include "fuzz/random_bytes.h"
#include "support/memory_files.h"
#include "support/sample_program.h"

namespace tamrin::test {
namespace {

TEST(ReadPayload, NeverTakesADamagedPlayerForAnotherScenario) {
    RandomBytes random;
    MemoryFiles files;
    for (int round = FuzzRounds(3000); round > 0; --round) {
        const ProgramKind kind = kProgramKinds[random.Below(3)];
        const std::string text = random.Text(60, {"CIPHER\r\n", "TAMRINPL", "\n"});
        const std::string player = *MakePlayer(SampleProgram(kind), text);
        std::string& bytes = files.contents["p"] = player;
        for (std::size_t damage = random.Below(4); damage > 0 && !bytes.empty(); --damage) {
            // Mostly in the headers or near the end, where it hurts.
            const std::size_t near = random.Below(std::min<std::size_t>(300, bytes.size()));
            const std::size_t places[] = {random.Below(bytes.size()), near,
                                          bytes.size() - 1 - near};
            const std::size_t at = places[random.Below(3)];
            if (random.Below(4) == 0) bytes.resize(at);
            if (at < bytes.size()) bytes[at] = static_cast<char>(random.Below(256));
        }
        const Payload payload = ReadPayload(files, "p");
        if (payload.carried == Carried::kScenario) {
            EXPECT_TRUE(payload.scenario.starts_with(text));
        }
        if (const auto next = MakePlayer(bytes, "next")) {
            files.contents["p"] = *next;
            EXPECT_TRUE(ReadPayload(files, "p").scenario.starts_with("next"));
        }
    }
}

}  // namespace
}  // namespace tamrin::test
