#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tamrin {

class Files;

// A stand-alone player: a copy of the program that carries a scenario. In its file stand, one
// behind the other,
//   the program, with the mark "TAMRIN" and the byte 1 in its head (MarkPlace),
//   the scenario as the text of an enciphered file, with LF behind it until the place is a multiple
//     of eight, where a signature can follow at once,
//   and the trailer of 24 bytes, its numbers with the lowest byte first:
//     4  the CRC-32 (Checksum) of the scenario's bytes
//     8  their number, the LF behind them counted
//     4  the version of all this, 1
//     8  "TAMRINPL"
// The mark tells a player that has lost its end from a program that carries nothing. Version and
// name are last, so that a later version may hold more in front of them.
//
// A digital signature ends a Windows program's file. A player is signed after it was made: the
// signature then covers the scenario, which is found in front of it. A player made by a signed
// program has no signature, for it is not what was signed.

enum class Carried {
    kNothing,   // an ordinary program, or a file that cannot be read
    kScenario,  // a whole scenario
    kCut,       // a player whose file ends too early
    kChanged,   // a player whose scenario is not the one that was written
    kNewer,     // a player of a later version
};

struct Payload {
    Carried carried = Carried::kNothing;
    std::string scenario;  // the bytes of a scenario file
};

// What a program file carries. Reads the file's head and its last bytes, and more only of a player.
Payload ReadPayload(const Files& files, const std::string& program);

// The bytes of a player that carries the bytes of a scenario file, made of those of a program or of
// another player, whose scenario is left out. Nothing when they are no program's, or those of a
// damaged player.
std::optional<std::string> MakePlayer(std::string program, std::string_view scenario);

}  // namespace tamrin
