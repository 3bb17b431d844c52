#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tamrin {

// One edit of a list: `removed` stood from `position` on, and `inserted` stands there since.
struct Splice {
    int position = 0;
    std::vector<std::string> removed;
    std::vector<std::string> inserted;
};

// The edits of a list that can be undone and redone, and where among them the list was last saved.
class EditHistory {
public:
    // Takes an edit that has been made. What was undone before can no longer be redone, and beyond
    // a few hundred edits the oldest is forgotten.
    void Add(Splice edit);

    // The edit to undo or redo now, null when there is none. It lasts until the next call.
    const Splice* Undo();
    const Splice* Redo();

    // Forgets all edits. `saved` tells whether the list is as it was saved.
    void Clear(bool saved);

    void MarkSaved() { saved_ = done_; }
    // Whether the list is as it was last saved.
    bool IsSaved() const { return saved_ == done_; }

private:
    static constexpr std::size_t kMost = 500;
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    std::vector<Splice> edits_;
    std::size_t done_ = 0;   // edits in front of this one are done, the others undone
    std::size_t saved_ = 0;  // the value of done_ when the list was saved, or kNever
};

}  // namespace tamrin
