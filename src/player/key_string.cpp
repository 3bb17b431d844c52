#include "player/key_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace tamrin {
namespace {

// More strokes than anyone means; a repeat count beyond it is a slip of the pen.
constexpr std::size_t kMostStrokes = 10000;

struct KeyName {
    std::string_view written;
    std::string_view name;
};

constexpr auto kKeyNames = std::to_array<KeyName>({
    {"BACKSPACE", "BACKSPACE"},
    {"BKSP", "BACKSPACE"},
    {"BREAK", "BREAK"},
    {"BS", "BACKSPACE"},
    {"CAPSLOCK", "CAPSLOCK"},
    {"CLEAR", "CLEAR"},
    {"DEL", "DELETE"},
    {"DELETE", "DELETE"},
    {"DOWN", "DOWN"},
    {"END", "END"},
    {"ENTER", "ENTER"},
    {"ESC", "ESC"},
    {"ESCAPE", "ESC"},
    {"HELP", "HELP"},
    {"HOME", "HOME"},
    {"INS", "INSERT"},
    {"INSERT", "INSERT"},
    {"LEFT", "LEFT"},
    {"NUMLOCK", "NUMLOCK"},
    {"PGDN", "PGDN"},
    {"PGUP", "PGUP"},
    {"PRTSC", "PRTSC"},
    {"RETURN", "ENTER"},
    {"RIGHT", "RIGHT"},
    {"SCROLLLOCK", "SCROLLLOCK"},
    {"TAB", "TAB"},
    {"UP", "UP"},
});

std::string Capitals(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
    }
    return result;
}

// The name that a stroke carries for a name written in braces; empty when there is no such key.
std::string CanonicalName(std::string_view written) {
    const std::string name = Capitals(written);
    const auto* entry = std::find_if(kKeyNames.begin(), kKeyNames.end(),
                                     [&](const KeyName& key) { return key.written == name; });
    if (entry != kKeyNames.end()) return std::string(entry->name);
    int number = 0;
    if (name.size() < 2 || name[0] != 'F') return "";
    const auto [end, error] = std::from_chars(name.data() + 1, name.data() + name.size(), number);
    const bool is_function_key = error == std::errc() && end == name.data() + name.size() &&
                                 name[1] != '0' && number >= 1 && number <= 16;
    return is_function_key ? name : "";
}

// Bytes of the UTF-8 character that begins with `lead`.
std::size_t CharacterLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    std::optional<std::vector<KeyStroke>> Parse() {
        while (at_ < text_.size()) {
            if (!TakeOne()) return std::nullopt;
        }
        if (in_group_ || modified_) return std::nullopt;
        return std::move(strokes_);
    }

private:
    bool TakeOne() {
        const char c = text_[at_];
        switch (c) {
            case '+':
                return TakeModifier(pending_.shift);
            case '^':
                return TakeModifier(pending_.ctrl);
            case '%':
                return TakeModifier(pending_.alt);
            case '(':
                if (in_group_) return false;
                group_ = pending_;
                in_group_ = true;
                Forget();
                ++at_;
                return true;
            case ')':
                if (!in_group_ || modified_) return false;
                in_group_ = false;
                group_ = KeyStroke();
                ++at_;
                return true;
            case '{':
                return TakeBraces();
            case '}':
                return false;
            case '~':
                ++at_;
                return Add("", "ENTER", 1);
            default: {
                const std::string_view character = text_.substr(at_, CharacterLength(c));
                at_ += character.size();
                return Add(character, "", 1);
            }
        }
    }

    bool TakeModifier(bool& modifier) {
        modifier = true;
        modified_ = true;
        ++at_;
        return true;
    }

    bool TakeBraces() {
        // The first character behind the brace may itself be a closing one: "{}}".
        const auto close = text_.find('}', at_ + 2);
        if (close == std::string_view::npos) return false;
        std::string_view inside = text_.substr(at_ + 1, close - at_ - 1);
        at_ = close + 1;
        int count = 1;
        const auto blank = inside.find(' ', 1);
        if (blank != std::string_view::npos) {
            const std::string_view number = inside.substr(blank + 1);
            const auto [end, error] =
                std::from_chars(number.data(), number.data() + number.size(), count);
            if (error != std::errc() || end != number.data() + number.size() || count < 0) {
                return false;
            }
            inside = inside.substr(0, blank);
        }
        if (inside.size() == CharacterLength(inside[0])) return Add(inside, "", count);
        const std::string name = CanonicalName(inside);
        return !name.empty() && Add("", name, count);
    }

    bool Add(std::string_view character, std::string_view name, int count) {
        if (strokes_.size() + static_cast<std::size_t>(count) > kMostStrokes) return false;
        KeyStroke stroke = pending_;
        stroke.text = character;
        stroke.name = name;
        stroke.shift |= group_.shift;
        stroke.ctrl |= group_.ctrl;
        stroke.alt |= group_.alt;
        strokes_.insert(strokes_.end(), static_cast<std::size_t>(count), stroke);
        Forget();
        return true;
    }

    void Forget() {
        pending_ = KeyStroke();
        modified_ = false;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<KeyStroke> strokes_;
    KeyStroke pending_;  // modifiers read for the next key
    bool modified_ = false;
    KeyStroke group_;  // modifiers of the group being read
    bool in_group_ = false;
};

}  // namespace

std::optional<std::vector<KeyStroke>> ParseKeyString(std::string_view text) {
    return Parser(text).Parse();
}

std::string KeyStringOf(std::string_view text) {
    constexpr std::string_view kSpecial = "+^%~(){}[]";
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        if (c == '\r') continue;
        if (c == '\n') {
            result += '~';
        } else if (kSpecial.find(c) != std::string_view::npos) {
            result += {'{', c, '}'};
        } else {
            result += c;
        }
    }
    return result;
}

}  // namespace tamrin
