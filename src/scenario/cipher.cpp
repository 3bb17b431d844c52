#include "scenario/cipher.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <utility>

namespace tamrin {
namespace {

constexpr std::size_t kFillerBytes = 50;
constexpr unsigned kFirstFiller = 'G';

// The numbers that say which places are swapped: a linear congruential generator of 24 bits whose
// state, seen as a fraction of 2^24, is the draw. Files depend on each of its constants. It runs in
// whole numbers, so that every machine draws the same, and in both directions, so that undoing the
// swaps from the last to the first needs no list of them.
class PlaceGenerator {
public:
    // Seeds from the single-precision form of the negated parameter; the seeding takes one draw.
    explicit PlaceGenerator(int parameter) {
        static_assert(std::numeric_limits<float>::is_iec559);
        const auto bits = std::bit_cast<std::uint32_t>(-static_cast<float>(parameter));
        state_ = (bits + (bits >> 24U)) & kMask;
        Forward();
    }

    void Forward() { state_ = (state_ * kFactor + kSummand) & kMask; }
    void Back() { state_ = ((state_ - kSummand) * kInverse) & kMask; }

    // The draw as a place from 1 to `last`.
    std::size_t Place(std::size_t last) const {
        return static_cast<std::size_t>(std::uint64_t{state_} * last >> 24U) + 1;
    }

private:
    static constexpr std::uint32_t kMask = 0xFFFFFF;
    static constexpr std::uint32_t kFactor = 1140671485;
    static constexpr std::uint32_t kSummand = 12820163;
    static constexpr std::uint32_t kInverse = 0x093155;
    static_assert(((kFactor * kInverse) & kMask) == 1);

    std::uint32_t state_ = 0;
};

// Each swap joins the place drawn for it with the one drawn two draws later. The first character
// keeps its place.
void Scramble(std::string& text, int parameter) {
    if (text.size() < 3) return;
    const std::size_t last = text.size() - 1;
    PlaceGenerator generator(parameter);
    const auto draw = [&] {
        generator.Forward();
        return generator.Place(last);
    };
    std::size_t first = draw();
    std::size_t second = draw();
    for (std::size_t swaps = last - 1; swaps > 0; --swaps) {
        const std::size_t third = draw();
        std::swap(text[first], text[third]);
        first = std::exchange(second, third);
    }
}

void Unscramble(std::string& text, int parameter) {
    if (text.size() < 3) return;
    const std::size_t last = text.size() - 1;
    PlaceGenerator generator(parameter);
    for (std::size_t draws = 0; draws < text.size(); ++draws) generator.Forward();
    const auto draw_back = [&] {
        const std::size_t place = generator.Place(last);
        generator.Back();
        return place;
    };
    std::size_t third = draw_back();
    std::size_t second = draw_back();
    for (std::size_t swaps = last - 1; swaps > 0; --swaps) {
        const std::size_t first = draw_back();
        std::swap(text[first], text[third]);
        third = std::exchange(second, first);
    }
}

// What MapChar answers when enciphering, for every byte.
constexpr std::array<char, 256> EncipheredDigits() {
    std::array<char, 256> digits{};
    for (const char c : kHexAlphabet) digits[static_cast<unsigned char>(c)] = MapChar(c, true);
    return digits;
}

// The value of each character of the cipher's alphabet as a hexadecimal digit; 0 for all others.
constexpr std::array<unsigned char, 256> DigitValues() {
    std::array<unsigned char, 256> values{};
    for (const char c : kCipherAlphabet) {
        values[static_cast<unsigned char>(c)] =
            static_cast<unsigned char>(kHexAlphabet.find(MapChar(c, false)));
    }
    return values;
}

constexpr std::array<char, 256> kEncipheredDigits = EncipheredDigits();
constexpr std::array<unsigned char, 256> kDigitValues = DigitValues();

void AppendHex(std::string& hex, unsigned byte) {
    hex += kHexAlphabet[byte >> 4U];
    hex += kHexAlphabet[byte & 0xFU];
}

}  // namespace

std::string RandomFiller(std::size_t count, std::mt19937& random) {
    std::string hex;
    hex.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        // The upper four of 32 random bits.
        AppendHex(hex, kFirstFiller + static_cast<unsigned>(random() >> 28U));
    }
    return hex;
}

std::string EncipherText(std::string_view bytes, int parameter) {
    std::mt19937 filler{std::random_device{}()};
    return EncipherText(bytes, parameter, filler);
}

std::string EncipherText(std::string_view bytes, int parameter, std::mt19937& filler) {
    std::string line;
    line.reserve(2 * (bytes.size() + kFillerBytes));
    for (const char c : bytes) AppendHex(line, static_cast<unsigned char>(c));
    line += RandomFiller(kFillerBytes, filler);
    for (char& digit : line) digit = kEncipheredDigits[static_cast<unsigned char>(digit)];
    Scramble(line, parameter);
    return line;
}

std::string DecipherText(std::string_view line, int parameter) {
    const std::size_t size = line.size() / 2;
    if (size <= kFillerBytes) return {};
    std::string text(line);
    Unscramble(text, parameter);
    const auto value = [&](std::size_t at) {
        return kDigitValues[static_cast<unsigned char>(text[at])];
    };
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(value(2 * i) << 4U | value(2 * i + 1));
    }
    text.resize(size - kFillerBytes);
    return text;
}

}  // namespace tamrin
