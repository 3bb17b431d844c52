#include "platform/windows/menu.h"

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

struct ShortcutKey {
    std::string_view name;
    WORD key;
};

constexpr ShortcutKey kShortcutKeys[] = {
    {"Del", VK_DELETE}, {"Ins", VK_INSERT}, {"Esc", VK_ESCAPE},  {"Enter", VK_RETURN},
    {"Tab", VK_TAB},    {"Back", VK_BACK},  {"Home", VK_HOME},   {"End", VK_END},
    {"Up", VK_UP},      {"Down", VK_DOWN},  {"Left", VK_LEFT},   {"Right", VK_RIGHT},
    {"PgUp", VK_PRIOR}, {"PgDn", VK_NEXT},  {"Space", VK_SPACE},
};

WORD KeyOf(std::string_view name) {
    for (const ShortcutKey& named : kShortcutKeys) {
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

// One key with its modifiers; `key` is 0 when the text names no key.
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

constexpr std::size_t kBar = static_cast<std::size_t>(-1);

UINT CommandOf(std::size_t position) {
    return MenuTree::kFirstCommand + static_cast<UINT>(position);
}

std::wstring Caption(const MenuEntry& entry) {
    std::wstring caption = Wide(entry.Text());
    const std::string_view shortcuts = entry.spec().shortcut;
    if (!shortcuts.empty()) caption += L'\t' + Wide(shortcuts.substr(0, shortcuts.find(", ")));
    return caption;
}

}  // namespace

std::vector<ACCEL> Shortcuts(std::string_view text, WORD command) {
    std::vector<ACCEL> shortcuts;
    while (!text.empty()) {
        const auto end = text.find(", ");
        const ACCEL shortcut = ReadShortcut(text.substr(0, end), command);
        if (shortcut.key != 0) shortcuts.push_back(shortcut);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
    }
    return shortcuts;
}

void MenuEntry::SetText(std::string_view text) {
    if (Text() == text) return;
    StoredControl::SetText(text);
    tree_.Refresh(position_);
}

void MenuEntry::SetEnabled(bool enabled) {
    if (Enabled() == enabled) return;
    StoredControl::SetEnabled(enabled);
    tree_.Refresh(position_);
}

void MenuEntry::SetVisible(bool visible) {
    if (Visible() == visible) return;
    StoredControl::SetVisible(visible);
    tree_.Refresh(position_);
}

void MenuEntry::SetChecked(bool checked) {
    if (Checked() == checked) return;
    StoredControl::SetChecked(checked);
    tree_.Refresh(position_);
}

MenuTree::MenuTree(std::span<const MenuSpec> specs) : menus_(specs.size()) {
    for (std::size_t i = 0; i < specs.size(); ++i) {
        entries_.push_back(std::make_unique<MenuEntry>(*this, specs[i], i));
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (IsMenu(i)) menus_[i] = CreatePopupMenu();
        if (IsContextMenu(i)) {
            context_menus_.emplace_back(menus_[i]);
        } else if (IsMenu(i) && !bar_) {
            bar_ = CreateMenu();
        }
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (menus_[i]) Fill(i);
    }
    if (bar_) Fill(kBar);
    MakeAccelerators();
}

bool MenuTree::IsMenu(std::size_t position) const {
    return (entries_[position]->spec().flags & kMenu) != 0;
}

bool MenuTree::IsContextMenu(std::size_t position) const {
    return IsMenu(position) && (entries_[position]->spec().flags & kHidden) != 0;
}

std::size_t MenuTree::ParentOf(std::size_t position) const {
    if (IsMenu(position)) return kBar;
    while (!IsMenu(position)) --position;
    return position;
}

void MenuTree::Append(HMENU menu, std::size_t position) {
    const MenuEntry& entry = *entries_[position];
    if (!entry.Visible()) return;
    if (entry.spec().caption == "-") {
        AppendMenuW(menu, MF_SEPARATOR, CommandOf(position), nullptr);
        return;
    }
    UINT flags = MF_STRING;
    if (!entry.Enabled()) flags |= MF_GRAYED;
    if (entry.Checked()) flags |= MF_CHECKED;
    UINT_PTR what = CommandOf(position);
    if (menus_[position]) {
        flags |= MF_POPUP;
        what = reinterpret_cast<UINT_PTR>(menus_[position]);
    }
    AppendMenuW(menu, flags, what, Caption(entry).c_str());
}

// Empties a menu and adds its visible entries again.
void MenuTree::Fill(std::size_t position) {
    const bool is_bar = position == kBar;
    const HMENU menu = is_bar ? bar_ : menus_[position];
    while (GetMenuItemCount(menu) > 0) RemoveMenu(menu, 0, MF_BYPOSITION);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (ParentOf(i) == position && !IsContextMenu(i)) Append(menu, i);
    }
}

void MenuTree::Refresh(std::size_t position) {
    if (!IsContextMenu(position)) Fill(ParentOf(position));
}

void MenuTree::MakeAccelerators() {
    std::vector<ACCEL> shortcuts;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const auto keys = Shortcuts(entries_[i]->spec().shortcut, static_cast<WORD>(CommandOf(i)));
        shortcuts.insert(shortcuts.end(), keys.begin(), keys.end());
    }
    if (shortcuts.empty()) return;
    accelerators_.reset(
        CreateAcceleratorTableW(shortcuts.data(), static_cast<int>(shortcuts.size())));
}

MenuEntry* MenuTree::Find(std::string_view name) {
    for (const auto& entry : entries_) {
        if (entry->spec().name == name) return entry.get();
    }
    return nullptr;
}

bool MenuTree::Choose(UINT command) {
    if (command < kFirstCommand || command - kFirstCommand >= entries_.size()) return false;
    const MenuEntry& entry = *entries_[command - kFirstCommand];
    // A shortcut also reaches disabled entries.
    if (entry.Enabled()) Raise(entry.onClick);
    return true;
}

void MenuTree::PopUp(std::string_view name, HWND owner, POINT point) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i]->spec().name != name || !menus_[i]) continue;
        const int command = TrackPopupMenu(menus_[i], TPM_RETURNCMD | TPM_RIGHTBUTTON, point.x,
                                           point.y, 0, owner, nullptr);
        if (command != 0) Choose(static_cast<UINT>(command));
        return;
    }
}

}  // namespace tamrin
