#include "scenario/checksum.h"

#include <array>

namespace tamrin {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;  // its bits in reverse

// What each value of the lowest byte adds.
constexpr std::array<std::uint32_t, 256> ByteTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1U) ^ ((value & 1U) != 0 ? kPolynomial : 0);
        }
        table[byte] = value;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> kTable = ByteTable();

}  // namespace

std::uint32_t Checksum(std::string_view bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const char c : bytes) {
        value = (value >> 8U) ^ kTable[(value ^ static_cast<unsigned char>(c)) & 0xFFU];
    }
    return ~value;
}

}  // namespace tamrin
