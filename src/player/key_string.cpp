#include "player/key_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "platform/text.h"

namespace tamrin {
namespace {

// Nobody means to send more strokes; a larger repeat count is a typing error.
constexpr std::size_t kStrokeLimit = 10000;

struct KeyName {
    std::string_view written;
    std::string_view name;
};

constexpr auto kKeyNames = std::to_array<KeyName>({
    {"ADD", "ADD"},
    {"BACKSPACE", "BACKSPACE"},
    {"BKSP", "BACKSPACE"},
    {"BREAK", "BREAK"},
    {"BS", "BACKSPACE"},
    {"CAPSLOCK", "CAPSLOCK"},
    {"CLEAR", "CLEAR"},
    {"DEL", "DELETE"},
    {"DELETE", "DELETE"},
    {"DIVIDE", "DIVIDE"},
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
    {"MULTIPLY", "MULTIPLY"},
    {"NUMLOCK", "NUMLOCK"},
    {"PGDN", "PGDN"},
    {"PGUP", "PGUP"},
    {"PRTSC", "PRTSC"},
    {"RETURN", "ENTER"},
    {"RIGHT", "RIGHT"},
    {"SCROLLLOCK", "SCROLLLOCK"},
    {"SUBTRACT", "SUBTRACT"},
    {"TAB", "TAB"},
    {"UP", "UP"},
});

// The name that a stroke carries for a name written in braces; empty when there is no such key.
std::string CanonicalName(std::string_view written) {
    const std::string name = UpperCase(written);
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

std::string InMarks(std::string_view text) { return "「" + std::string(text) + "」"; }

std::string NoPartner(std::string_view sign, std::string_view partner) {
    return InMarks(sign) + "に対する" + InMarks(partner) + "がありません。";
}

class Parser {
public:
    Parser(std::string_view text, std::string& why) : text_(text), why_(why) {}

    std::optional<std::vector<KeyStroke>> Parse() {
        while (at_ < text_.size()) {
            if (!TakeOne()) return std::nullopt;
        }
        if (!groups_.empty()) {
            Fail(NoPartner("(", ")"));
            return std::nullopt;
        }
        if (LacksKey()) return std::nullopt;
        return std::move(strokes_);
    }

private:
    // Parentheses, and what is held down between them.
    struct Group {
        KeyStroke held;
        std::size_t first = 0;  // its first stroke
    };

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
                groups_.push_back({Held(), strokes_.size()});
                Forget();
                ++at_;
                return true;
            case ')':
                return TakeGroupEnd();
            case '{':
                return TakeBraces();
            case '}':
                return Fail(NoPartner("}", "{"));
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
        modifier_ = text_[at_++];
        return true;
    }

    bool TakeGroupEnd() {
        if (groups_.empty()) return Fail(NoPartner(")", "("));
        if (LacksKey()) return false;
        const bool empty = groups_.back().first == strokes_.size();
        groups_.pop_back();
        if (!empty) strokes_.back().holds_on = HoldsAny(Held());
        ++at_;
        return true;
    }

    bool TakeBraces() {
        // The first character behind the brace may itself be a closing one: "{}}".
        const auto close = text_.find('}', at_ + 2);
        if (close == std::string_view::npos) {
            const bool empty = text_.substr(at_) == "{}";
            return Fail(empty ? "「{}」の中にキーがありません。" : NoPartner("{", "}"));
        }
        const std::string_view braces = text_.substr(at_, close + 1 - at_);
        std::string_view inside = braces.substr(1, braces.size() - 2);
        at_ = close + 1;
        int count = 1;
        const auto blank = inside.find(' ', 1);
        if (blank != std::string_view::npos) {
            const std::string_view rest = inside.substr(blank);
            const std::string_view number =
                rest.substr(std::min(rest.find_first_not_of(' '), rest.size()));
            const auto [end, error] =
                std::from_chars(number.data(), number.data() + number.size(), count);
            if (error != std::errc() || end != number.data() + number.size() || count < 0) {
                return Fail(InMarks(braces) + "の回数が正しくありません。");
            }
            inside = inside.substr(0, blank);
        }
        if (inside.size() == CharacterLength(inside[0])) return Add(inside, "", count);
        const std::string name = CanonicalName(inside);
        if (name.empty()) return Fail(InMarks(braces) + "というキーはありません。");
        return Add("", name, count);
    }

    bool Add(std::string_view character, std::string_view name, int count) {
        if (strokes_.size() + static_cast<std::size_t>(count) > kStrokeLimit) {
            return Fail("キーが多すぎます（" + std::to_string(kStrokeLimit) + " 個まで）。");
        }
        KeyStroke stroke = Held();
        stroke.text = character;
        stroke.name = name;
        stroke.holds_on = HoldsAny(stroke);
        strokes_.insert(strokes_.end(), static_cast<std::size_t>(count), stroke);
        Forget();
        if (count > 0) strokes_.back().holds_on = HoldsAny(Held());
        return true;
    }

    // What is held down for the next key: by its modifiers, and by the groups around it.
    KeyStroke Held() const {
        KeyStroke held = pending_;
        if (groups_.empty()) return held;
        held.shift |= groups_.back().held.shift;
        held.ctrl |= groups_.back().held.ctrl;
        held.alt |= groups_.back().held.alt;
        return held;
    }

    static bool HoldsAny(const KeyStroke& stroke) {
        return stroke.shift || stroke.ctrl || stroke.alt;
    }

    bool LacksKey() {
        return modifier_ != 0 && !Fail(InMarks({&modifier_, 1}) + "の後にキーがありません。");
    }

    bool Fail(std::string why) {
        why_ = std::move(why);
        return false;
    }

    void Forget() {
        pending_ = KeyStroke();
        modifier_ = 0;
    }

    std::string_view text_;
    std::string& why_;
    std::size_t at_ = 0;
    std::vector<KeyStroke> strokes_;
    KeyStroke pending_;  // modifiers read for the next key
    char modifier_ = 0;  // the last of them, 0 for none
    std::vector<Group> groups_;
};

}  // namespace

std::optional<std::vector<KeyStroke>> ParseKeyString(std::string_view text, std::string& why) {
    return Parser(text, why).Parse();
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
