#include "platform/windows/pending_press.h"

#include <algorithm>
#include <vector>

#include "platform/windows/control.h"
#include "platform/windows/menu.h"
#include "platform/windows/shortcut.h"
#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

bool IsForm(HWND window, std::string_view name) {
    wchar_t form[64] = L"";
    GetClassNameW(window, form, 64);
    return form == Wide(name);
}

// What is held down now; the messages that say so may wait in the queue themselves.
bool IsHeld(const ACCEL& shortcut) {
    const auto held = [&](BYTE flag, int key) {
        return ((shortcut.fVirt & flag) != 0) == ((GetAsyncKeyState(key) & 0x8000) != 0);
    };
    return held(FSHIFT, VK_SHIFT) && held(FCONTROL, VK_CONTROL) && held(FALT, VK_MENU);
}

}  // namespace

bool WillPress(const MSG& message, const Pressable& what) {
    const HWND root = GetAncestor(message.hwnd, GA_ROOT);
    WindowForm* const form = IsForm(root, what.form) ? WindowForm::Of(root) : nullptr;
    if (!form) return false;
    if (message.message == WM_LBUTTONDOWN || message.message == WM_LBUTTONUP) {
        const auto* button = dynamic_cast<const WindowControl*>(&form->Find(what.button));
        return button && button->window() == message.hwnd;
    }
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
    const auto* entry = dynamic_cast<const MenuEntry*>(&form->Find(what.entry));
    std::vector<ACCEL> shortcuts;
    if (entry) AppendShortcuts(shortcuts, entry->spec().shortcut, 0);
    return std::any_of(shortcuts.begin(), shortcuts.end(), [&](const ACCEL& shortcut) {
        return shortcut.key == message.wParam && IsHeld(shortcut);
    });
}

}  // namespace tamrin
