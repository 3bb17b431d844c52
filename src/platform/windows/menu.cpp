#include "platform/windows/menu.h"

#include "platform/windows/control.h"
#include "platform/windows/shortcut.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

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
        } else if (entries_[i]->spec().depth == 0 && !bar_) {
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
    const int depth = entries_[position]->spec().depth;
    return depth == 0 ||
           (position + 1 < entries_.size() && entries_[position + 1]->spec().depth > depth);
}

bool MenuTree::IsContextMenu(std::size_t position) const {
    const MenuSpec& spec = entries_[position]->spec();
    return spec.depth == 0 && (spec.flags & kHidden) != 0;
}

std::size_t MenuTree::ParentOf(std::size_t position) const {
    const int depth = entries_[position]->spec().depth;
    while (position-- > 0) {
        if (entries_[position]->spec().depth < depth) return position;
    }
    return kBar;
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

// Takes all entries out of a menu and puts in those that are to be seen.
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
        AppendShortcuts(shortcuts, entries_[i]->spec().shortcut, static_cast<WORD>(CommandOf(i)));
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
    // A shortcut reaches entries too that cannot be chosen at present.
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
