#include "platform/chromium/key_table.h"

#include <algorithm>
#include <string_view>

namespace tamrin {
namespace {

struct NamedKey {
    std::string_view name;  // as KeyStroke::name has it
    int code_number;
    std::string_view key;
    std::string_view code;
    std::string_view text = {};
};

constexpr NamedKey kNamedKeys[] = {
    {"ADD", 107, "+", "NumpadAdd", "+"},
    {"BACKSPACE", 8, "Backspace", "Backspace"},
    {"BREAK", 3, "Cancel", "Pause"},
    {"CAPSLOCK", 20, "CapsLock", "CapsLock"},
    {"CLEAR", 12, "Clear", "NumpadClear"},
    {"DELETE", 46, "Delete", "Delete"},
    {"DIVIDE", 111, "/", "NumpadDivide", "/"},
    {"DOWN", 40, "ArrowDown", "ArrowDown"},
    {"END", 35, "End", "End"},
    {"ENTER", 13, "Enter", "Enter", "\r"},
    {"ESC", 27, "Escape", "Escape"},
    {"HELP", 47, "Help", "Help"},
    {"HOME", 36, "Home", "Home"},
    {"INSERT", 45, "Insert", "Insert"},
    {"LEFT", 37, "ArrowLeft", "ArrowLeft"},
    {"MULTIPLY", 106, "*", "NumpadMultiply", "*"},
    {"NUMLOCK", 144, "NumLock", "NumLock"},
    {"PGDN", 34, "PageDown", "PageDown"},
    {"PGUP", 33, "PageUp", "PageUp"},
    {"PRTSC", 44, "PrintScreen", "PrintScreen"},
    {"RIGHT", 39, "ArrowRight", "ArrowRight"},
    {"SCROLLLOCK", 145, "ScrollLock", "ScrollLock"},
    {"SUBTRACT", 109, "-", "NumpadSubtract", "-"},
    {"TAB", 9, "Tab", "Tab"},
    {"UP", 38, "ArrowUp", "ArrowUp"},
};

// The keys of a US keyboard that type neither letters nor digits: what they type alone and with
// Shift.
struct SignKey {
    char plain;
    char shifted;
    int code_number;
    std::string_view code;
};

constexpr SignKey kSignKeys[] = {
    {' ', ' ', 32, "Space"},       {';', ':', 186, "Semicolon"},    {'=', '+', 187, "Equal"},
    {',', '<', 188, "Comma"},      {'-', '_', 189, "Minus"},        {'.', '>', 190, "Period"},
    {'/', '?', 191, "Slash"},      {'`', '~', 192, "Backquote"},    {'[', '{', 219, "BracketLeft"},
    {'\\', '|', 220, "Backslash"}, {']', '}', 221, "BracketRight"}, {'\'', '"', 222, "Quote"},
    {'1', '!', '1', "Digit1"},     {'2', '@', '2', "Digit2"},       {'3', '#', '3', "Digit3"},
    {'4', '$', '4', "Digit4"},     {'5', '%', '5', "Digit5"},       {'6', '^', '6', "Digit6"},
    {'7', '&', '7', "Digit7"},     {'8', '*', '8', "Digit8"},       {'9', '(', '9', "Digit9"},
    {'0', ')', '0', "Digit0"},
};

PageKey FunctionKey(std::string_view name, bool shift) {
    if (name.size() < 2 || name.size() > 3 || name.front() != 'F') return {};
    int number = 0;
    for (const char c : name.substr(1)) {
        if (c < '0' || c > '9') return {};
        number = number * 10 + (c - '0');
    }
    if (number < 1 || number > 16) return {};
    return {111 + number, std::string(name), std::string(name), "", shift};
}

PageKey Letter(char c, bool shift) {
    const char small = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    const char capital = static_cast<char>(small - 32);
    const bool shifted = shift || c == capital;
    const std::string typed(1, shifted ? capital : small);
    return {capital, typed, std::string("Key") + capital, typed, shifted};
}

}  // namespace

PageKey FindPageKey(const KeyStroke& stroke) {
    for (const NamedKey& named : kNamedKeys) {
        if (named.name != stroke.name) continue;
        return {named.code_number, std::string(named.key), std::string(named.code),
                std::string(named.text), stroke.shift};
    }
    if (!stroke.name.empty()) return FunctionKey(stroke.name, stroke.shift);
    if (stroke.text.size() != 1) return {};
    const char c = stroke.text.front();
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) return Letter(c, stroke.shift);
    for (const SignKey& sign : kSignKeys) {
        if (sign.plain != c && sign.shifted != c) continue;
        const bool shifted = stroke.shift || (sign.shifted == c && sign.plain != c);
        const std::string typed(1, shifted ? sign.shifted : sign.plain);
        return {sign.code_number, typed, std::string(sign.code), typed, shifted};
    }
    return {};
}

std::string EditCommand(const KeyStroke& stroke) {
    if (!stroke.ctrl || stroke.alt || stroke.text.size() != 1) return "";
    switch (stroke.text.front() | 0x20) {
        case 'a':
            return "selectAll";
        case 'c':
            return "copy";
        case 'v':
            return "paste";
        case 'x':
            return "cut";
        case 'y':
            return "redo";
        case 'z':
            return stroke.shift ? "redo" : "undo";
        default:
            return "";
    }
}

}  // namespace tamrin
