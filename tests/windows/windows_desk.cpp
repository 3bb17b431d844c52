#include "windows/windows_desk.h"

#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "platform/windows/wide.h"

namespace tamrin::test {
namespace {

// The command of a menu's entry, 0 when it has none of that caption.
UINT CommandNamed(HMENU menu, const std::wstring& caption) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[200] = L"";
        GetMenuStringW(menu, static_cast<UINT>(i), text, 200, MF_BYPOSITION);
        const std::wstring_view whole = text;
        if (whole.substr(0, whole.find(L'\t')) == caption) return GetMenuItemID(menu, i);
        const UINT command = GetSubMenu(menu, i) ? CommandNamed(GetSubMenu(menu, i), caption) : 0;
        if (command != 0) return command;
    }
    return 0;
}

}  // namespace

void WindowsDesk::Show(Form& form) {
    form.SetVisible(true);
    SetForegroundWindow(WindowOf(form));
    Until([&form] { return GetForegroundWindow() == WindowOf(form); });
}

void WindowsDesk::Pass(int milliseconds) {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
    for (clock_.DoEvents(); GetTickCount64() < end; clock_.DoEvents()) clock_.Sleep(1);
}

void WindowsDesk::Until(const std::function<bool()>& state) {
    for (int i = 0; i < 5000 && !state(); ++i) Pass(1);
}

void WindowsDesk::Click(Form& form, std::string_view name, int index) {
    Control& control = form.Find(name, index);
    if (auto* const child = dynamic_cast<WindowControl*>(&control)) {
        SendMessageW(child->window(), BM_CLICK, 0, 0);
    } else if (const UINT command = CommandNamed(GetMenu(WindowOf(form)), Wide(control.Text()))) {
        SendMessageW(WindowOf(form), WM_COMMAND, command, 0);
    }
    clock_.DoEvents();
}

void WindowsDesk::Key(WORD key, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    SendInput(1, &input, sizeof input);
}

void WindowsDesk::Strike(WORD key, std::initializer_list<WORD> held) {
    for (const WORD modifier : held) Key(modifier, true);
    Key(key, true);
    Key(key, false);
    for (const WORD modifier : held) Key(modifier, false);
    clock_.DoEvents();
}

void WindowsDesk::Press(Form& form, std::string_view key) {
    SetForegroundWindow(WindowOf(form));
    const ACCEL shortcut = Shortcuts(key).at(0);
    const WORD none = 0xE8;  // a key that nothing knows
    Strike(shortcut.key, {(shortcut.fVirt & FCONTROL) != 0 ? WORD{VK_CONTROL} : none,
                          (shortcut.fVirt & FSHIFT) != 0 ? WORD{VK_SHIFT} : none});
}

void WindowsDesk::WhenModal(Form& form, std::function<void()> act) {
    clock_.AddSource([&form, act = std::move(act), done = false]() mutable {
        if (done || !form.Visible()) return;
        done = true;
        act();
    });
}

std::unique_ptr<TextCodec> MakeTextCodec() { return std::make_unique<WindowsTextCodec>(); }
std::unique_ptr<Files> MakeFiles() { return std::make_unique<WindowsFiles>(); }
std::unique_ptr<Processes> MakeProcesses() { return std::make_unique<WindowsProcesses>(); }
std::unique_ptr<Desk> MakeDesk() { return std::make_unique<WindowsDesk>(); }

}  // namespace tamrin::test
