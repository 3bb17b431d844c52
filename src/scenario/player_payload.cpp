#include "scenario/player_payload.h"

#include <algorithm>
#include <array>
#include <boost/crc.hpp>
#include <boost/endian/buffers.hpp>
#include <cstdint>
#include <cstring>

#include "platform/files.h"
#include "scenario/program_image.h"

namespace tamrin {
namespace {

constexpr std::string_view kMark = "TAMRIN\x01";
constexpr std::string_view kName = "TAMRINPL";
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kAlignment = 8;  // of a signature

// The trailer, byte for byte as the file holds it.
struct Trailer {
    boost::endian::little_uint32_buf_t checksum;
    boost::endian::little_uint64_buf_t length;
    boost::endian::little_uint32_buf_t version;
    std::array<char, 8> name;
};
constexpr std::size_t kTrailerSize = 24;
static_assert(sizeof(Trailer) == kTrailerSize && kName.size() == sizeof(Trailer::name));

// The trailer at the end of `bytes`.
std::optional<Trailer> ReadTrailer(std::string_view bytes) {
    if (bytes.size() < kTrailerSize || !bytes.ends_with(kName)) return std::nullopt;
    Trailer trailer;
    std::memcpy(&trailer, bytes.data() + bytes.size() - kTrailerSize, kTrailerSize);
    return trailer;
}

std::uint32_t Checksum(std::string_view bytes) {
    boost::crc_32_type crc;
    crc.process_bytes(bytes.data(), bytes.size());
    return crc.checksum();
}

bool IsMarked(std::string_view program) {
    const std::size_t place = MarkPlace(program);
    return place > 0 && program.substr(place).starts_with(kMark);
}

// Removes what a player without a signature carries. False when the player is damaged.
bool RemovePayload(std::string& player) {
    const auto trailer = ReadTrailer(player);
    if (!trailer || trailer->version.value() != kVersion) return false;
    player.resize(player.size() - kTrailerSize);
    if (trailer->length.value() > player.size()) return false;
    const std::size_t size = player.size() - trailer->length.value();
    if (Checksum(std::string_view(player).substr(size)) != trailer->checksum.value()) return false;
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
    const std::uint32_t version = trailer->version.value();
    const std::uint64_t length = trailer->length.value();
    if (version > kVersion) return {Carried::kNewer, ""};
    if (!marked || version != kVersion || length > end) return {Carried::kChanged, ""};
    auto scenario = files.ReadPart(program, end - length, length);
    if (!scenario || Checksum(*scenario) != trailer->checksum.value()) {
        return {Carried::kChanged, ""};
    }
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
    Trailer trailer{};
    trailer.checksum = Checksum(payload);
    trailer.length = payload.size();
    trailer.version = kVersion;
    std::ranges::copy(kName, trailer.name.begin());
    program.append(reinterpret_cast<const char*>(&trailer), sizeof trailer);
    return program;
}

}  // namespace tamrin
