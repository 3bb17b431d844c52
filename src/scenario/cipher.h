#pragma once

#include <random>
#include <string>
#include <string_view>

namespace tamrin {

// The scrambling of scenario files. It hides their text from a casual look and protects nothing:
// whoever has the program can undo it. The result is one line of printable characters without CR
// and LF; the file format depends on that.
//
// Each byte of the text, and then of some random filler, becomes two hexadecimal digits in an
// alphabet of the cipher's own. Then the places of the digits are swapped in an order that depends
// only on the parameter.

// The parameter that all scenario files use.
inline constexpr int kScenarioCipherParameter = 40718263;

// Answers one line of 2 * size + 100 characters.
std::string EncipherText(std::string_view bytes, int parameter);

// The same, with the filler drawn from `filler`.
std::string EncipherText(std::string_view bytes, int parameter, std::mt19937& filler);

// Answers the bytes that were enciphered as `line`. There is no check: a damaged line or another
// parameter gives garbage, and a line too short to hold any text gives an empty text.
std::string DecipherText(std::string_view line, int parameter);

}  // namespace tamrin
