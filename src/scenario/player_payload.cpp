#include "scenario/player_payload.h"

#include <algorithm>
#include <cstdint>

#include "platform/files.h"
#include "scenario/checksum.h"
#include "scenario/little_endian.h"
#include "scenario/program_image.h"

namespace tamrin {
namespace {

constexpr std::string_view kMark = "TAMRIN\x01";
constexpr std::string_view kName = "TAMRINPL";
constexpr std::uint64_t kVersion = 1;
constexpr std::size_t kTrailerSize = 24;
constexpr std::size_t kAlignment = 8;  // of a signature

struct Trailer {
    std::uint64_t checksum = 0;
    std::uint64_t length = 0;
    std::uint64_t version = 0;
};

// The trailer with which `bytes` end.
std::optional<Trailer> ReadTrailer(std::string_view bytes) {
    if (bytes.size() < kTrailerSize || !bytes.ends_with(kName)) return std::nullopt;
    bytes.remove_prefix(bytes.size() - kTrailerSize);
    return Trailer{ReadNumber(bytes, 0, 4), ReadNumber(bytes, 4, 8), ReadNumber(bytes, 12, 4)};
}

bool IsMarked(std::string_view program) {
    const std::size_t place = MarkPlace(program);
    return place > 0 && program.substr(place).starts_with(kMark);
}

// Cuts what a player carries off its bytes, which have no signature. False when it is damaged.
bool RemovePayload(std::string& player) {
    const auto trailer = ReadTrailer(player);
    if (!trailer || trailer->version != kVersion) return false;
    player.resize(player.size() - kTrailerSize);
    if (trailer->length > player.size()) return false;
    const std::size_t size = player.size() - trailer->length;
    if (Checksum(std::string_view(player).substr(size)) != trailer->checksum) return false;
    player.resize(size);
    return true;
}

}  // namespace

Payload ReadPayload(const Files& files, const std::string& program) {
    const std::string head = files.ReadPart(program, 0, kProgramHead).value_or("");
    std::uint64_t end = files.Size(program).value_or(0);
    if (const std::size_t signature = SignaturePlace(head, end); signature > 0) end = signature;
    const bool marked = IsMarked(head);
    end -= std::min<std::uint64_t>(end, kTrailerSize);
    const auto trailer = ReadTrailer(files.ReadPart(program, end, kTrailerSize).value_or(""));
    if (!trailer) return {marked ? Carried::kCut : Carried::kNothing, ""};
    if (trailer->version > kVersion) return {Carried::kNewer, ""};
    if (!marked || trailer->version != kVersion || trailer->length > end) {
        return {Carried::kChanged, ""};
    }
    auto scenario = files.ReadPart(program, end - trailer->length, trailer->length);
    if (!scenario || Checksum(*scenario) != trailer->checksum) return {Carried::kChanged, ""};
    return {Carried::kScenario, *std::move(scenario)};
}

std::optional<std::string> MakePlayer(std::string program, std::string_view scenario) {
    const std::size_t mark = MarkPlace(program);
    if (mark == 0) return std::nullopt;
    RemoveSignature(program);
    const bool carries = IsMarked(program) || ReadTrailer(program);
    if (carries && !RemovePayload(program)) return std::nullopt;
    program.replace(mark, kMark.size(), kMark);

    std::string payload(scenario);
    while ((program.size() + payload.size()) % kAlignment != 0) payload += '\n';
    program += payload;
    AppendNumber(program, Checksum(payload), 4);
    AppendNumber(program, payload.size(), 8);
    AppendNumber(program, kVersion, 4);
    program += kName;
    return program;
}

}  // namespace tamrin
