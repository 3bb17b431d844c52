#include "platform/windows/shortcut.h"

namespace tamrin {
namespace {

struct NamedKey {
    std::string_view name;
    WORD key;
};

constexpr NamedKey kNamedKeys[] = {
    {"Del", VK_DELETE}, {"Ins", VK_INSERT}, {"Esc", VK_ESCAPE},  {"Enter", VK_RETURN},
    {"Tab", VK_TAB},    {"Back", VK_BACK},  {"Home", VK_HOME},   {"End", VK_END},
    {"Up", VK_UP},      {"Down", VK_DOWN},  {"Left", VK_LEFT},   {"Right", VK_RIGHT},
    {"PgUp", VK_PRIOR}, {"PgDn", VK_NEXT},  {"Space", VK_SPACE},
};

WORD KeyOf(std::string_view name) {
    for (const NamedKey& named : kNamedKeys) {
        if (named.name == name) return named.key;
    }
    if (name.size() == 1) return static_cast<WORD>(static_cast<unsigned char>(name.front()));
    if (!name.starts_with('F')) return 0;
    int number = 0;
    for (const char c : name.substr(1)) {
        if (c < '0' || c > '9' || number > 24) return 0;
        number = 10 * number + (c - '0');
    }
    return number >= 1 && number <= 24 ? static_cast<WORD>(VK_F1 + number - 1) : WORD{0};
}

// One key with what is held down meanwhile; its `key` is 0 when the text names none.
ACCEL ReadShortcut(std::string_view text, WORD command) {
    ACCEL shortcut{FVIRTKEY, 0, command};
    for (auto plus = text.find('+'); plus != std::string_view::npos; plus = text.find('+')) {
        const std::string_view modifier = text.substr(0, plus);
        if (modifier == "Ctrl") shortcut.fVirt |= FCONTROL;
        if (modifier == "Shift") shortcut.fVirt |= FSHIFT;
        if (modifier == "Alt") shortcut.fVirt |= FALT;
        text.remove_prefix(plus + 1);
    }
    shortcut.key = KeyOf(text);
    return shortcut;
}

}  // namespace

void AppendShortcuts(std::vector<ACCEL>& shortcuts, std::string_view text, WORD command) {
    while (!text.empty()) {
        const auto end = text.find(", ");
        const ACCEL shortcut = ReadShortcut(text.substr(0, end), command);
        if (shortcut.key != 0) shortcuts.push_back(shortcut);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
    }
}

bool EditsText(const MSG& message) {
    if (message.message != WM_KEYDOWN) return false;
    if (message.wParam == VK_DELETE) return true;
    constexpr std::string_view kLetters = "ACVXYZ";
    return GetKeyState(VK_CONTROL) < 0 && message.wParam < 0x80 &&
           kLetters.find(static_cast<char>(message.wParam)) != std::string_view::npos;
}

}  // namespace tamrin
