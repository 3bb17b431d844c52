#pragma once

#include <cstdint>
#include <string>

namespace tamrin::test {

// The kinds of program files: of Windows with 32 and with 64 bits, and of Linux.
enum class ProgramKind { kWindows32, kWindows64, kLinux };
inline constexpr ProgramKind kProgramKinds[] = {ProgramKind::kWindows32, ProgramKind::kWindows64,
                                                ProgramKind::kLinux};

// Writes a number over `size` bytes, the lowest first.
inline void PutNumber(std::string& bytes, std::size_t at, std::uint64_t number, std::size_t size) {
    for (; size > 0; --size, number >>= 8U) bytes.at(at++) = static_cast<char>(number & 0xFFU);
}

// Where the headers of a sample are.
inline constexpr std::size_t kPe = 0x80;
inline constexpr std::size_t kPeChecksum = kPe + 24 + 64;

// A file with the headers of a program and a meaningless body, 5003 bytes long.
inline std::string SampleProgram(ProgramKind kind) {
    std::string program = std::string(1024, '\0') + std::string(3979, 'b');
    if (kind == ProgramKind::kLinux) return program.replace(0, 4, "\177ELF");
    program.replace(0, 2, "MZ").replace(kPe, 2, "PE");
    PutNumber(program, 0x3C, kPe, 4);
    PutNumber(program, kPe + 24, kind == ProgramKind::kWindows64 ? 0x20B : 0x10B, 2);
    PutNumber(program, kPeChecksum, 12345, 4);
    return program;
}

// The same with a signature at its end, as the tools that sign write it.
inline std::string Signed(std::string program, ProgramKind kind) {
    const std::size_t entry = kPe + 24 + (kind == ProgramKind::kWindows64 ? 144 : 128);
    program.append((8 - program.size() % 8) % 8, '\0');
    PutNumber(program, entry, program.size() + (std::uint64_t{800} << 32U), 8);
    return program.append(800, 's');
}

}  // namespace tamrin::test
