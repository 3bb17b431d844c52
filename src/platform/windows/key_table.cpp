#include "platform/windows/key_table.h"

#include <algorithm>
#include <charconv>

namespace tamrin {
namespace {

struct NamedKey {
    std::string_view name;
    WORD code;
    bool extended = false;
};

constexpr NamedKey kNamedKeys[] = {
    {"ADD", VK_ADD},
    {"BACKSPACE", VK_BACK},
    {"BREAK", VK_CANCEL, true},
    {"CAPSLOCK", VK_CAPITAL},
    {"CLEAR", VK_CLEAR},
    {"DELETE", VK_DELETE, true},
    {"DIVIDE", VK_DIVIDE, true},
    {"DOWN", VK_DOWN, true},
    {"END", VK_END, true},
    {"ENTER", VK_RETURN},
    {"ESC", VK_ESCAPE},
    {"HELP", VK_HELP},
    {"HOME", VK_HOME, true},
    {"INSERT", VK_INSERT, true},
    {"LEFT", VK_LEFT, true},
    {"MULTIPLY", VK_MULTIPLY},
    {"NUMLOCK", VK_NUMLOCK, true},
    {"PGDN", VK_NEXT, true},
    {"PGUP", VK_PRIOR, true},
    {"PRTSC", VK_SNAPSHOT, true},
    {"RIGHT", VK_RIGHT, true},
    {"SCROLLLOCK", VK_SCROLL},
    {"SUBTRACT", VK_SUBTRACT},
    {"TAB", VK_TAB},
    {"UP", VK_UP, true},
};

WORD FunctionKey(std::string_view name) {
    int number = 0;
    if (name.size() < 2 || name.front() != 'F') return 0;
    const char* const past = name.data() + name.size();
    const auto [end, error] = std::from_chars(name.data() + 1, past, number);
    const bool known = error == std::errc() && end == past && number >= 1 && number <= 24;
    return static_cast<WORD>(known ? VK_F1 + number - 1 : 0);
}

}  // namespace

VirtualKey FindNamedKey(std::string_view name) {
    const auto* const key = std::ranges::find(kNamedKeys, name, &NamedKey::name);
    if (key == std::end(kNamedKeys)) return {.code = FunctionKey(name)};
    return {.code = key->code, .extended = key->extended};
}

VirtualKey FindCharacterKey(wchar_t character, HKL keyboard) {
    // The high byte holds Shift, Ctrl and Alt; its other bits are modifiers that we never press.
    const SHORT found = VkKeyScanExW(character, keyboard);
    const int held = HIBYTE(found);
    if (found == -1 || held > 7) return {};
    return {.code = LOBYTE(found),
            .shift = (held & 1) != 0,
            .ctrl = (held & 2) != 0,
            .alt = (held & 4) != 0};
}

std::wstring Shifted(const std::wstring& text, HKL keyboard) {
    const VirtualKey key =
        text.size() == 1 ? FindCharacterKey(text.front(), keyboard) : VirtualKey();
    if (key.code == 0 || key.shift || key.ctrl || key.alt) return text;
    BYTE state[256] = {};
    state[VK_SHIFT] = 0x80;
    // Leaves the keyboard state with a pending dead key as it is.
    constexpr UINT kChangeNothing = 4;
    wchar_t typed[8] = L"";
    const UINT scan = MapVirtualKeyExW(key.code, MAPVK_VK_TO_VSC, keyboard);
    const int length = ToUnicodeEx(key.code, scan, state, typed, 8, kChangeNothing, keyboard);
    return length > 0 ? std::wstring(typed, static_cast<std::size_t>(length)) : text;
}

}  // namespace tamrin
