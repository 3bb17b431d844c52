#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tamrin {

// What one must know of a program file, Windows (PE) or Linux (ELF), to append something to it.
// Each function takes the bytes of the whole file, or the first kProgramHead of them.
inline constexpr std::size_t kProgramHead = 4096;

// The place of seven bytes in the head that no system reads, so that they can hold a mark: among
// the reserved words of the old DOS header (PE), in the padding of the identification (ELF). 0 when
// the bytes are not a program.
std::size_t MarkPlace(std::string_view program);

// The place where the digital signature of a Windows program begins. 0 when there is none that
// extends to the end of the file of `size` bytes.
std::size_t SignaturePlace(std::string_view program, std::uint64_t size);

// Removes the signature, which a changed program does not match. The checksum in the header, which
// would be wrong too, is set to "none" in any case.
void RemoveSignature(std::string& program);

}  // namespace tamrin
