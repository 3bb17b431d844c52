#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/windows/control.h"
#include "platform/windows/handle.h"

namespace tamrin {

class MenuTree;

// The keys of a menu entry's shortcut for `command`: a list of keys parted by ", ", such as
// "Shift+F5, Esc". Names that are no key are left out.
std::vector<ACCEL> Shortcuts(std::string_view text, WORD command = 0);

// One entry of a form's menus.
class MenuEntry : public StoredControl {
public:
    MenuEntry(MenuTree& tree, const MenuSpec& spec, std::size_t position)
        : StoredControl(spec.caption, spec.flags), tree_(tree), spec_(spec), position_(position) {}

    void SetText(std::string_view text) override;
    void SetEnabled(bool enabled) override;
    void SetVisible(bool visible) override;
    void SetChecked(bool checked) override;

    const MenuSpec& spec() const { return spec_; }

private:
    MenuTree& tree_;
    const MenuSpec spec_;
    std::size_t position_;
};

// The menu bar and the context menus of a form, with the shortcuts of their entries.
class MenuTree {
public:
    // The command of the table's first entry; the others follow. Controls have lower numbers.
    static constexpr UINT kFirstCommand = 0x4000;

    explicit MenuTree(std::span<const MenuSpec> specs);
    MenuTree(const MenuTree&) = delete;
    MenuTree& operator=(const MenuTree&) = delete;

    // The menu bar; null when the form has none. The form's window owns it once it is made with it.
    HMENU bar() const { return bar_; }
    HACCEL accelerators() const { return accelerators_.get(); }

    MenuEntry* Find(std::string_view name);

    // Raises the event of the entry with that command if the entry is enabled. False when it is no
    // command of these menus.
    bool Choose(UINT command);

    // Opens a menu at a point of the screen for the window `owner`, and carries out the choice.
    void PopUp(std::string_view name, HWND owner, POINT point);

    // Rebuilds the menu of an entry that has changed.
    void Refresh(std::size_t position);

private:
    std::size_t ParentOf(std::size_t position) const;
    bool IsMenu(std::size_t position) const;
    bool IsContextMenu(std::size_t position) const;
    void Fill(std::size_t position);
    void Append(HMENU menu, std::size_t position);
    void MakeAccelerators();

    std::vector<std::unique_ptr<MenuEntry>> entries_;
    std::vector<HMENU> menus_;  // of the entries that are menus, null for the others
    std::vector<OwnedMenu> context_menus_;
    HMENU bar_ = nullptr;
    OwnedAccelerators accelerators_;
};

}  // namespace tamrin
