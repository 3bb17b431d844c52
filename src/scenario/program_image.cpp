#include "scenario/program_image.h"

#include "scenario/little_endian.h"

namespace tamrin {
namespace {

// The formats are those of Microsoft's "PE Format" and of the System V ABI.
constexpr std::string_view kElf =
    "\x7F"
    "ELF";
constexpr std::size_t kElfPadding = 9;  // the last seven of the sixteen bytes of e_ident
constexpr std::string_view kDos = "MZ";
constexpr std::size_t kDosReserved = 0x28;  // e_res2
constexpr std::size_t kDosPePlace = 0x3C;   // e_lfanew
constexpr std::string_view kPe{"PE\0\0", 4};

// The DOS header, and the header of an ELF file, which the program's other headers follow.
constexpr std::size_t kLeastHead = 64;

constexpr std::size_t kOptionalHeader = 24;  // behind "PE", the file header between them
constexpr std::size_t kChecksumField = 64;
constexpr std::uint64_t kPe32Plus = 0x20B;  // of 64 bits
// The entry of the certificate table among the directories: its place in the file and its size.
constexpr std::size_t kCertificates32 = 128;
constexpr std::size_t kCertificates64 = 144;

// The place of the optional header of a PE file; 0 when it is none.
std::size_t OptionalHeader(std::string_view program) {
    if (!program.starts_with(kDos)) return 0;
    const std::size_t pe = ReadNumber(program, kDosPePlace, 4);
    if (pe < kLeastHead || pe >= program.size() || !program.substr(pe).starts_with(kPe)) return 0;
    return pe + kOptionalHeader;
}

// The place of the certificate table's entry in such a file.
std::size_t CertificateEntry(std::string_view program, std::size_t header) {
    return header +
           (ReadNumber(program, header, 2) == kPe32Plus ? kCertificates64 : kCertificates32);
}

void Clear(std::string& bytes, std::size_t at, std::size_t size) {
    if (bytes.size() >= at + size) bytes.replace(at, size, size, '\0');
}

}  // namespace

std::size_t MarkPlace(std::string_view program) {
    if (program.size() < kLeastHead) return 0;
    if (program.starts_with(kElf)) return kElfPadding;
    return OptionalHeader(program) > 0 ? kDosReserved : 0;
}

std::size_t SignaturePlace(std::string_view program, std::uint64_t size) {
    const std::size_t header = OptionalHeader(program);
    if (header == 0) return 0;
    const std::size_t entry = CertificateEntry(program, header);
    const std::uint64_t place = ReadNumber(program, entry, 4);
    return place > entry && place + ReadNumber(program, entry + 4, 4) == size ? place : 0;
}

void RemoveSignature(std::string& program) {
    const std::size_t header = OptionalHeader(program);
    if (header == 0) return;
    Clear(program, header + kChecksumField, 4);
    const std::size_t signature = SignaturePlace(program, program.size());
    if (signature == 0) return;
    Clear(program, CertificateEntry(program, header), 8);
    program.resize(signature);
}

}  // namespace tamrin
