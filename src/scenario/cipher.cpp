#include "scenario/cipher.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <utility>

namespace tamrin {
namespace {

constexpr std::size_t kFillerBytes = 50;

// The hexadecimal digits 0 to F of the cipher.
constexpr std::string_view kDigits = "Vd2*:R~mJ5_eQs=N";

// Chooses the places to swap: a linear congruential generator of 24 bits whose state, read as a
// fraction of 2^24, is the draw. Files depend on each of its constants. It uses whole numbers, so
// that every machine draws the same, and runs in both directions, so that the swaps can be undone
// from the last to the first without a list of them.
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

// Each swap exchanges the place drawn for it and the one drawn two draws later. The first character
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

// The value of each digit of the cipher; 0 for all other characters.
constexpr std::array<unsigned char, 256> kDigitValues = [] {
    std::array<unsigned char, 256> values{};
    for (std::size_t value = 0; value < kDigits.size(); ++value) {
        values[static_cast<unsigned char>(kDigits[value])] = static_cast<unsigned char>(value);
    }
    return values;
}();

void AppendDigits(std::string& digits, unsigned byte) {
    digits += kDigits[byte >> 4U];
    digits += kDigits[byte & 0xFU];
}

}  // namespace

std::string EncipherText(std::string_view bytes, int parameter) {
    std::mt19937 filler{std::random_device{}()};
    return EncipherText(bytes, parameter, filler);
}

std::string EncipherText(std::string_view bytes, int parameter, std::mt19937& filler) {
    std::string line;
    line.reserve(2 * (bytes.size() + kFillerBytes));
    for (const char c : bytes) AppendDigits(line, static_cast<unsigned char>(c));
    for (std::size_t i = 0; i < kFillerBytes; ++i) {
        // The upper four of 32 random bits: a letter from 'G' to 'V'.
        AppendDigits(line, 'G' + static_cast<unsigned>(filler() >> 28U));
    }
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
