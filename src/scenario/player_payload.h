#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tamrin {

class Files;

// A stand-alone player: a copy of the program that carries a scenario. Its file consists of
//   the program, with the mark "TAMRIN" and the byte 1 in its head (MarkPlace),
//   the scenario as the text of an enciphered file, padded with LF until the size of the file is a
//     multiple of eight, so that a signature can follow at once,
//   the trailer of 24 bytes, its numbers with the lowest byte first:
//     4  the CRC-32 of the scenario and its padding, as in ZIP files
//     8  the size of both
//     4  the version of this format, 1
//     8  "TAMRINPL"
// The mark distinguishes a player that has lost its end from a program that carries nothing.
// Version and name are last, so that a later version may add fields before them.
//
// A digital signature is the end of a Windows program's file. A player is signed after it was made:
// the signature then covers the scenario, which is found before it. A player that a signed program
// makes has no signature, because it is not the file that was signed.

enum class Carried {
    kNothing,   // an ordinary program, or a file that cannot be read
    kScenario,  // a whole scenario
    kCut,       // a player whose file ends too early
    kChanged,   // a player whose scenario differs from the one that was written
    kNewer,     // a player of a later version
};

struct Payload {
    Carried carried = Carried::kNothing;
    std::string scenario;  // the bytes of a scenario file
};

// What a program file carries. Reads only the head and the last bytes of a file that is no player.
Payload ReadPayload(const Files& files, const std::string& program);

// Answers the bytes of a player that carries the bytes of a scenario file. `program` is the bytes
// of a program, or of a player, whose scenario is replaced. Nothing when they are not a program or
// a damaged player.
std::optional<std::string> MakePlayer(std::string program, std::string_view scenario);

}  // namespace tamrin
