#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tamrin {

// Keys that are held down while another key is struck.
enum Modifier : unsigned { kShift = 1, kCtrl = 2, kAlt = 4, kWindows = 8 };

// Keys and mouse buttons that are sent in one piece: no input of the user comes in between.
class InputBatch {
public:
    void Add(const INPUT& input) { inputs_.push_back(input); }

    void Press(WORD code, bool extended, HKL keyboard) { AddKey(code, extended, 0, keyboard); }
    void Release(WORD code, bool extended, HKL keyboard) {
        AddKey(code, extended, KEYEVENTF_KEYUP, keyboard);
    }

    // Characters as text, whatever the state of the keyboard.
    void Type(const std::wstring& text);

    // Holds exactly these modifiers: presses those that are not down, and releases all others, also
    // those that the user holds. `held` are down already.
    void Hold(unsigned modifiers, unsigned held);
    void ReleaseHeld(unsigned held);

    // How many messages the receiver gets from these keys, with the characters that they type.
    int Messages() const;

    // False when Windows has not accepted all of it; then no key of it stays down.
    bool Send();

private:
    void AddKey(WORD code, bool extended, DWORD flags, HKL keyboard);

    std::vector<INPUT> inputs_;
};

}  // namespace tamrin
