#include "app/edit_history.h"

#include <utility>

namespace tamrin {

void EditHistory::Add(Splice edit) {
    edits_.resize(done_);
    if (saved_ != kNever && saved_ > done_) saved_ = kNever;
    if (edits_.size() == kMost) {
        edits_.erase(edits_.begin());
        saved_ = saved_ == kNever || saved_ == 0 ? kNever : saved_ - 1;
    }
    edits_.push_back(std::move(edit));
    done_ = edits_.size();
}

const Splice* EditHistory::Undo() { return done_ == 0 ? nullptr : &edits_[--done_]; }

const Splice* EditHistory::Redo() { return done_ == edits_.size() ? nullptr : &edits_[done_++]; }

void EditHistory::Clear(bool saved) {
    edits_.clear();
    done_ = 0;
    saved_ = saved ? 0 : kNever;
}

}  // namespace tamrin
