#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/edit_history.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/window_system.h"
#include "state/globals.h"

namespace tamrin {

// The commands that edit the lines of the record list, and undo and redo of what they did.
class RecordEditor {
public:
    RecordEditor(Globals& globals, WindowSystem& windows, Clock& clock, ListBox& list)
        : globals_(globals), windows_(windows), clock_(clock), list_(list) {}

    // Told after each change of the list.
    std::function<void()> onListChanged;
    // Told when nothing is left that could be lost: the list was saved, or replaced by another.
    std::function<void()> onSettled;

    void mnuAddUpper_Click();
    void mnuAddUnder_Click();
    void mnuDelLine_Click();
    void mnuContextCopy_Click();

    // Overwrites the lines from the current one down with those of the clipboard, and makes the
    // list longer only where it ends. That it does not insert is intended: a block of records is
    // laid over the lines that were added for it. Without a current line it begins at the first.
    void mnuContextPaste_Click();

    void mnuUndo_Click();
    void mnuRedo_Click();
    void mnuSelectAll_Click();

    // Puts `lines` in the place of `count` lines from `position` on, as one edit.
    void Replace(int position, int count, std::vector<std::string> lines);

    // All lines; and all of them replaced from outside (loaded, cleared), which nothing undoes.
    std::vector<std::string> Lines() const { return LinesFrom(0, list_.Count()); }
    void Load(std::vector<std::string> lines);

    void MarkSaved();

private:
    std::vector<std::string> LinesFrom(int position, int count) const;
    // Whether the list still holds what the history believes, which anyone may have changed.
    bool Holds(int position, const std::vector<std::string>& lines) const;
    void Put(int position, int removed, const std::vector<std::string>& lines);
    void Restore(int position, const std::vector<std::string>& from,
                 const std::vector<std::string>& to);
    void InsertEmptyLine(int position);
    void SelectLine(int position);

    Globals& globals_;
    WindowSystem& windows_;
    Clock& clock_;
    ListBox& list_;
    EditHistory history_;
};

}  // namespace tamrin
