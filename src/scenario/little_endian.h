#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tamrin {

// Numbers in files: the lowest byte first.

// The number of `size` bytes, eight at most, at a place of `bytes`; 0 where they end before.
inline std::uint64_t ReadNumber(std::string_view bytes, std::size_t at, std::size_t size) {
    if (at > bytes.size() || bytes.size() - at < size) return 0;
    std::uint64_t number = 0;
    for (std::size_t i = size; i > 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    }
    return number;
}

inline void AppendNumber(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8U * i & 0xFFU);
}

}  // namespace tamrin
