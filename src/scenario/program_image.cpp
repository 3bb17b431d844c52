#include "scenario/program_image.h"

#include <boost/endian/conversion.hpp>

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

// The size of the DOS header, and of the header of an ELF file, before all other headers.
constexpr std::size_t kMinimalHead = 64;

constexpr std::size_t kOptionalHeader = 24;  // from "PE" on; the file header is between them
constexpr std::size_t kChecksumField = 64;
constexpr std::uint16_t kPe32Plus = 0x20B;  // a program of 64 bits
// The entry of the certificate table: the table's place in the file and its size, 4 bytes each.
constexpr std::size_t kCertificates32 = 128;
constexpr std::size_t kCertificates64 = 144;

// The number at a place of a program, lowest byte first; 0 where the bytes end before.
template <class Number>
Number ReadNumber(std::string_view program, std::size_t at) {
    if (at > program.size() || program.size() - at < sizeof(Number)) return 0;
    const auto* bytes = reinterpret_cast<const unsigned char*>(program.data() + at);
    return boost::endian::endian_load<Number, sizeof(Number), boost::endian::order::little>(bytes);
}

// The place of the optional header of a PE file; 0 in any other file.
std::size_t OptionalHeader(std::string_view program) {
    if (!program.starts_with(kDos)) return 0;
    const std::size_t pe = ReadNumber<std::uint32_t>(program, kDosPePlace);
    if (pe < kMinimalHead || pe >= program.size() || !program.substr(pe).starts_with(kPe)) return 0;
    return pe + kOptionalHeader;
}

// The place of that entry in a PE file with its optional header at `header`.
std::size_t CertificateEntry(std::string_view program, std::size_t header) {
    return header + (ReadNumber<std::uint16_t>(program, header) == kPe32Plus ? kCertificates64
                                                                             : kCertificates32);
}

void Clear(std::string& bytes, std::size_t at, std::size_t size) {
    if (bytes.size() >= at + size) bytes.replace(at, size, size, '\0');
}

}  // namespace

std::size_t MarkPlace(std::string_view program) {
    if (program.size() < kMinimalHead) return 0;
    if (program.starts_with(kElf)) return kElfPadding;
    return OptionalHeader(program) > 0 ? kDosReserved : 0;
}

std::size_t SignaturePlace(std::string_view program, std::uint64_t size) {
    const std::size_t header = OptionalHeader(program);
    if (header == 0) return 0;
    const std::size_t entry = CertificateEntry(program, header);
    const std::uint64_t place = ReadNumber<std::uint32_t>(program, entry);
    const std::uint64_t length = ReadNumber<std::uint32_t>(program, entry + 4);
    return place > entry && place + length == size ? place : 0;
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
