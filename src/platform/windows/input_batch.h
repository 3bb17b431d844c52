#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tamrin {

// Keys that are held down while another one is struck.
enum Modifier : unsigned { kShift = 1, kCtrl = 2, kAlt = 4, kWindows = 8 };

// Keys and mouse buttons that are sent in one piece: nothing of the user's gets in between.
class InputBatch {
public:
    void Add(const INPUT& input) { inputs_.push_back(input); }

    void Press(WORD code, bool extended, HKL keyboard) { AddKey(code, extended, 0, keyboard); }
    void Release(WORD code, bool extended, HKL keyboard) {
        AddKey(code, extended, KEYEVENTF_KEYUP, keyboard);
    }

    // Characters as themselves, whatever the state of the keyboard.
    void Type(const std::wstring& text);

    // Holds these modifiers and no others: presses those that are not down, and releases all others
    // that are, whoever holds them. `held` are down already.
    void Hold(unsigned modifiers, unsigned held);
    // Releases what was held.
    void Let(unsigned held);

    // How many messages these keys are to who receives them, characters counted in.
    int Messages() const;

    // False when Windows has not taken all of it; then nothing of it stays down.
    bool Send();

private:
    void AddKey(WORD code, bool extended, DWORD flags, HKL keyboard);

    std::vector<INPUT> inputs_;
};

}  // namespace tamrin
