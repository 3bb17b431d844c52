#include "platform/windows/input_batch.h"

namespace tamrin {
namespace {

struct ModifierKey {
    unsigned which;
    WORD code;
    bool extended;
    bool ours;  // the one of the two that we press; the user may hold either
};

constexpr ModifierKey kModifierKeys[] = {
    {kShift, VK_LSHIFT, false, true},  {kShift, VK_RSHIFT, false, false},
    {kCtrl, VK_LCONTROL, false, true}, {kCtrl, VK_RCONTROL, true, false},
    {kAlt, VK_LMENU, false, true},     {kAlt, VK_RMENU, true, false},
    {kWindows, VK_LWIN, true, false},  {kWindows, VK_RWIN, true, false},
};

// A key that no keyboard has and no program knows. Struck while Alt or the Windows key is held, it
// keeps their release from opening a menu.
constexpr WORD kNoKey = 0xE8;

bool IsDown(WORD code) { return GetAsyncKeyState(code) < 0; }

bool IsDown(unsigned which) {
    for (const ModifierKey& key : kModifierKeys) {
        if (key.which == which && IsDown(key.code)) return true;
    }
    return false;
}

}  // namespace

void InputBatch::AddKey(WORD code, bool extended, DWORD flags, HKL keyboard) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyExW(code, MAPVK_VK_TO_VSC, keyboard));
    input.ki.dwFlags = flags | (extended ? KEYEVENTF_EXTENDEDKEY : 0);
    Add(input);
}

void InputBatch::Type(const std::wstring& text) {
    for (const wchar_t unit : text) {
        for (const DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) {
            INPUT input{};
            input.type = INPUT_KEYBOARD;
            input.ki.wScan = unit;
            input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
            Add(input);
        }
    }
}

void InputBatch::Hold(unsigned modifiers, unsigned held) {
    for (const ModifierKey& key : kModifierKeys) {
        if ((modifiers & key.which) != 0 || !IsDown(key.code)) continue;
        if (key.which == kAlt || key.which == kWindows) {
            Press(kNoKey, false, nullptr);
            Release(kNoKey, false, nullptr);
        }
        Release(key.code, key.extended, nullptr);
    }
    for (const ModifierKey& key : kModifierKeys) {
        if (key.ours && (modifiers & ~held & key.which) != 0 && !IsDown(key.which)) {
            Press(key.code, key.extended, nullptr);
        }
    }
}

void InputBatch::ReleaseHeld(unsigned held) {
    for (const ModifierKey& key : kModifierKeys) {
        if (key.ours && (held & key.which) != 0) Release(key.code, key.extended, nullptr);
    }
}

int InputBatch::Messages() const {
    int messages = 0;
    // A pressed key may type a character, which is another message.
    for (const INPUT& input : inputs_)
        messages += (input.ki.dwFlags & KEYEVENTF_KEYUP) != 0 ? 1 : 2;
    return messages;
}

bool InputBatch::Send() {
    const auto send = [this] {
        const auto count = static_cast<UINT>(inputs_.size());
        return count == 0 || SendInput(count, inputs_.data(), sizeof(INPUT)) == count;
    };
    if (send()) return true;
    std::erase_if(inputs_, [](const INPUT& input) {
        return input.type != INPUT_KEYBOARD || (input.ki.dwFlags & KEYEVENTF_KEYUP) == 0;
    });
    send();
    return false;
}

}  // namespace tamrin
