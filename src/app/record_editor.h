#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/window_system.h"
#include "state/globals.h"

namespace tamrin {

// One edit of a list: the lines `removed` stood from `position` on, and now `inserted` stand there.
struct Splice {
    int position = 0;
    std::vector<std::string> removed;
    std::vector<std::string> inserted;
};

// The edits of a list that can be undone and redone, and the place among them at which the list was
// last saved.
class EditHistory {
public:
    // Adds an edit that has just been made. Edits that were undone can then no longer be redone.
    // Keeps the latest 500 edits.
    void Add(Splice edit);

    // The edit to undo or redo now, null when there is none. Valid until the next call.
    const Splice* Undo();
    const Splice* Redo();

    // Forgets all edits. `saved` says whether the list is as it was saved.
    void Clear(bool saved);

    void MarkSaved() { saved_ = done_; }
    // Whether the list is as it was last saved.
    bool IsSaved() const { return saved_ == done_; }

private:
    static constexpr std::size_t kMaxEdits = 500;
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    std::vector<Splice> edits_;
    std::size_t done_ = 0;   // the edits before this index are done, the others undone
    std::size_t saved_ = 0;  // the value of done_ when the list was saved, or kNever
};

// The commands that edit the lines of the record list, and undo and redo.
class RecordEditor {
public:
    RecordEditor(Globals& globals, WindowSystem& windows, Clock& clock, ListBox& list)
        : globals_(globals), windows_(windows), clock_(clock), list_(list) {}

    // Called after each change of the list.
    std::function<void()> onListChanged;
    // Called when nothing unsaved is left: the list was saved, or replaced by another.
    std::function<void()> onSettled;

    void mnuAddUpper_Click();
    void mnuAddUnder_Click();
    void mnuDelLine_Click();
    void mnuContextCopy_Click();

    // Overwrites the lines from the current one down with those of the clipboard, and adds lines
    // only at the end of the list. Not inserting is intended: users add empty lines first and paste
    // a block of records over them. Without a current line it begins at the first.
    void mnuContextPaste_Click();

    void mnuUndo_Click();
    void mnuRedo_Click();
    void mnuSelectAll_Click();

    // Puts `lines` in the place of `count` lines from `position` on, as one edit.
    void Replace(int position, int count, std::vector<std::string> lines);

    // All lines. Load replaces them all, as opening a file does; this cannot be undone.
    std::vector<std::string> Lines() const { return LinesFrom(0, list_.Count()); }
    void Load(std::vector<std::string> lines);

    void MarkSaved();

private:
    std::vector<std::string> LinesFrom(int position, int count) const;
    // Whether the list holds these lines there. Others than the editor may have changed it.
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
