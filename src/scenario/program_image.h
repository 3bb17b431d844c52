#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tamrin {

// What one who writes behind the end of a program file has to know of it: of a Windows program (PE)
// or one of Linux (ELF). Each call takes the file's bytes, or so many of them from its beginning.
inline constexpr std::size_t kProgramHead = 4096;

// The place of seven bytes in the head that no system reads and that may hold a mark: among the
// reserved words of the old DOS header (PE), in the padding of the identification (ELF). 0 when the
// bytes are no program's.
std::size_t MarkPlace(std::string_view program);

// The place at which the digital signature of a signed Windows program begins. 0 when there is none
// that reaches to the end of the file, which has `size` bytes.
std::size_t SignaturePlace(std::string_view program, std::uint64_t size);

// Takes the signature off: a changed program is not the one that was signed. The checksum beside
// it, which would be wrong then, is taken back to "none" in any case.
void RemoveSignature(std::string& program);

}  // namespace tamrin
