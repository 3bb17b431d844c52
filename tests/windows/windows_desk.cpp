#include "windows/windows_desk.h"

#include "platform/windows/wide.h"

namespace tamrin::test {
namespace {

void Key(WORD key, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

// Finds an entry's command by choosing among all of a menu's; 0 when it has none of that caption.
UINT CommandNamed(HMENU menu, const std::wstring& caption) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200] = L"";
        GetMenuStringW(menu, static_cast<UINT>(i), text, 200, MF_BYPOSITION);
        const std::wstring whole = text;
        if (whole.substr(0, whole.find(L'\t')) == caption) {
            return GetMenuItemID(menu, i);
        }
        if (const HMENU inner = GetSubMenu(menu, i)) {
            if (const UINT command = CommandNamed(inner, caption)) return command;
        }
    }
    return 0;
}

}  // namespace

void WindowsDesk::Pass(int milliseconds) {
    const std::uint32_t start = clock_.TickCount();
    do {
        clock_.DoEvents();
        clock_.Sleep(5);
    } while (clock_.TickCount() - start < static_cast<std::uint32_t>(milliseconds));
    clock_.DoEvents();
}

void WindowsDesk::Click(Form& form, std::string_view name, int index) {
    Control& control = form.Find(name, index);
    if (auto* const child = dynamic_cast<WindowControl*>(&control)) {
        SendMessageW(child->window(), BM_CLICK, 0, 0);
    } else if (const UINT command = CommandNamed(GetMenu(WindowOf(form)), Wide(control.Text()))) {
        SendMessageW(WindowOf(form), WM_COMMAND, command, 0);
    }
    Pass(20);
}

void WindowsDesk::Strike(WORD key, std::initializer_list<WORD> held) {
    for (const WORD modifier : held) Key(modifier, true);
    Key(key, true);
    Key(key, false);
    for (const WORD modifier : held) Key(modifier, false);
    Pass(50);
}

void WindowsDesk::Press(Form& form, std::string_view key) {
    SetForegroundWindow(WindowOf(form));
    const std::vector<ACCEL> keys = Shortcuts(key);
    std::vector<WORD> held;
    if ((keys.at(0).fVirt & FCONTROL) != 0) held.push_back(VK_CONTROL);
    if ((keys.at(0).fVirt & FSHIFT) != 0) held.push_back(VK_SHIFT);
    for (const WORD modifier : held) Key(modifier, true);
    Strike(keys.at(0).key);
    for (const WORD modifier : held) Key(modifier, false);
    Pass(20);
}

void WindowsDesk::WhenModal(Form& form, std::function<void()> act) {
    clock_.AddSource([&form, act = std::move(act), done = false]() mutable {
        if (done || !form.Visible()) return;
        done = true;
        act();
    });
}

}  // namespace tamrin::test
