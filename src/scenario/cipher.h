#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace tamrin {

// The scrambling of scenario files. It hides their text from a casual look and protects nothing:
// whoever has the program can undo it. What files rely on is its form: one line of printable
// characters, no CR or LF among them.
//
// A text is written as hexadecimal digits with some random filler behind, the digits are exchanged
// for those of another alphabet, and their places are swapped in an order that follows from the
// parameter alone.

// The parameter of all scenario files.
inline constexpr int kScenarioCipherParameter = 40718263;

// Answers one line of 2 * size + 100 characters.
std::string EncipherText(std::string_view bytes, int parameter);

// The same with a given source of the filler.
std::string EncipherText(std::string_view bytes, int parameter, std::mt19937& filler);

// Answers the bytes from which `line` was enciphered. There is no check: a damaged line, or another
// parameter, answers garbage, and a line too short to hold any text answers the empty text.
std::string DecipherText(std::string_view line, int parameter);

// Answers `count` random bytes from 'G' to 'V', each as two hexadecimal digits.
std::string RandomFiller(std::size_t count, std::mt19937& random);

inline constexpr std::string_view kHexAlphabet = "0123456789ABCDEF";
inline constexpr std::string_view kCipherAlphabet = "Vd2*:R~mJ5_eQs=N";

// Exchanges a hexadecimal digit for the character of the cipher's alphabet at the same position,
// or, with `encipher` false, the reverse. A byte outside the alphabet answers 0.
constexpr char MapChar(char byte, bool encipher) {
    const std::string_view from = encipher ? kHexAlphabet : kCipherAlphabet;
    const std::string_view to = encipher ? kCipherAlphabet : kHexAlphabet;
    const std::size_t position = from.find(byte);
    return position == from.npos ? '\0' : to[position];
}

}  // namespace tamrin
