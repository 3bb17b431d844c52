#include "platform/utf8.h"

#include <algorithm>

namespace tamrin {
namespace {

// For a first byte: how many bytes follow, which of its bits belong to the code, and the smallest
// code of that length. A `mask` of zero means that the byte begins no character.
struct Shape {
    std::size_t following;
    unsigned mask;
    char32_t smallest;
};

Shape ShapeOf(unsigned char first) {
    if (first < 0x80U) return {0, 0x7FU, 0};
    if ((first & 0xE0U) == 0xC0U) return {1, 0x1FU, 0x80};
    if ((first & 0xF0U) == 0xE0U) return {2, 0x0FU, 0x800};
    if ((first & 0xF8U) == 0xF0U) return {3, 0x07U, 0x10000};
    return {0, 0, 0};
}

char Byte(char32_t bits) { return static_cast<char>(static_cast<unsigned char>(bits)); }

}  // namespace

bool IsAscii(std::string_view text) {
    // Without an early exit the compiler can check many bytes at once.
    unsigned char all = 0;
    for (const char c : text) all |= static_cast<unsigned char>(c);
    return all < 0x80U;
}

Utf8Character ReadUtf8(std::string_view text, std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    const Shape shape = ShapeOf(first);
    const Utf8Character invalid{kReplacementCharacter, 1};
    if (shape.mask == 0 || text.size() - at <= shape.following) return invalid;
    char32_t code = first & shape.mask;
    for (std::size_t i = 1; i <= shape.following; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + i]);
        if ((byte & 0xC0U) != 0x80U) return invalid;
        code = code << 6U | (byte & 0x3FU);
    }
    if (code < shape.smallest || !IsScalarValue(code)) return invalid;
    return {code, shape.following + 1};
}

void AppendUtf8(std::string& text, char32_t code) {
    if (!IsScalarValue(code)) code = kReplacementCharacter;
    if (code < 0x80) {
        text += Byte(code);
    } else if (code < 0x800) {
        text += {Byte(0xC0U | code >> 6U), Byte(0x80U | (code & 0x3FU))};
    } else if (code < 0x10000) {
        text += {Byte(0xE0U | code >> 12U), Byte(0x80U | (code >> 6U & 0x3FU)),
                 Byte(0x80U | (code & 0x3FU))};
    } else {
        text += {Byte(0xF0U | code >> 18U), Byte(0x80U | (code >> 12U & 0x3FU)),
                 Byte(0x80U | (code >> 6U & 0x3FU)), Byte(0x80U | (code & 0x3FU))};
    }
}

std::string ValidUtf8(std::string_view text) {
    if (IsAscii(text)) return std::string(text);
    std::string valid;
    valid.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Character character = ReadUtf8(text, at);
        AppendUtf8(valid, character.code);
        at += character.length;
    }
    return valid;
}

std::size_t CutLength(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return text.size();
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0U) == 0x80U) --limit;
    return limit;
}

}  // namespace tamrin
