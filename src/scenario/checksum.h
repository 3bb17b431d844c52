#pragma once

#include <cstdint>
#include <string_view>

namespace tamrin {

// The CRC-32 of bytes, as ZIP and PNG files have it: polynomial 0x04C11DB7, lowest bit first.
std::uint32_t Checksum(std::string_view bytes);

}  // namespace tamrin
