#include "app/record_editor.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "platform/text.h"

namespace tamrin {
namespace {

// From this many lines on, setting the whole list is faster than moving its lines one by one.
constexpr int kManyLines = 200;

constexpr const char* kTitle = "Tamrin";

}  // namespace

void EditHistory::Add(Splice edit) {
    edits_.resize(done_);
    if (saved_ != kNever && saved_ > done_) saved_ = kNever;
    if (edits_.size() == kMaxEdits) {
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

std::vector<std::string> RecordEditor::LinesFrom(int position, int count) const {
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) lines.emplace_back(list_.Line(position + i));
    return lines;
}

bool RecordEditor::Holds(int position, const std::vector<std::string>& lines) const {
    const int count = static_cast<int>(lines.size());
    if (position + count > list_.Count()) return false;
    for (int i = 0; i < count; ++i) {
        if (list_.Line(position + i) != lines[static_cast<std::size_t>(i)]) return false;
    }
    return true;
}

void RecordEditor::Put(int position, int removed, const std::vector<std::string>& lines) {
    const int count = static_cast<int>(lines.size());
    if (std::abs(count - removed) >= kManyLines) {
        std::vector<std::string> all = LinesFrom(0, position);
        all.insert(all.end(), lines.begin(), lines.end());
        for (int i = position + removed; i < list_.Count(); ++i) all.emplace_back(list_.Line(i));
        list_.SetLines(std::move(all));
        return;
    }
    const int common = std::min(count, removed);
    for (int i = 0; i < common; ++i) {
        list_.SetLine(position + i, lines[static_cast<std::size_t>(i)]);
    }
    for (int i = removed; i > common; --i) list_.Remove(position + i - 1);
    for (int i = common; i < count; ++i) {
        list_.Insert(position + i, lines[static_cast<std::size_t>(i)]);
    }
}

void RecordEditor::Replace(int position, int count, std::vector<std::string> lines) {
    Splice edit{position, LinesFrom(position, count), std::move(lines)};
    Put(position, count, edit.inserted);
    history_.Add(std::move(edit));
    globals_.unsaved = true;
    if (onListChanged) onListChanged();
}

void RecordEditor::Load(std::vector<std::string> lines) {
    list_.SetLines(std::move(lines));
    history_.Clear(true);
    globals_.unsaved = false;
    if (onSettled) onSettled();
    if (onListChanged) onListChanged();
}

void RecordEditor::MarkSaved() {
    history_.MarkSaved();
    globals_.unsaved = false;
    if (onSettled) onSettled();
}

void RecordEditor::SelectLine(int position) {
    list_.SetListIndex(position);
    clock_.DoEvents();
}

void RecordEditor::InsertEmptyLine(int position) {
    Replace(position, 0, {""});
    SelectLine(position);
}

void RecordEditor::mnuAddUpper_Click() { InsertEmptyLine(std::max(list_.ListIndex(), 0)); }

void RecordEditor::mnuAddUnder_Click() { InsertEmptyLine(list_.ListIndex() + 1); }

void RecordEditor::mnuDelLine_Click() {
    int first = -1;
    int last = -1;
    std::vector<std::string> kept;  // between the first and the last line deleted
    std::vector<std::string> between;
    for (int i = 0; i < list_.Count(); ++i) {
        if (list_.Selected(i)) {
            if (first < 0) first = i;
            last = i;
            kept.insert(kept.end(), std::make_move_iterator(between.begin()),
                        std::make_move_iterator(between.end()));
            between.clear();
        } else if (first >= 0) {
            between.emplace_back(list_.Line(i));
        }
    }
    if (first < 0) return;
    Replace(first, last - first + 1, std::move(kept));
    list_.SetListIndex(first - 1);
}

void RecordEditor::mnuContextCopy_Click() {
    std::vector<std::string> lines;
    for (int i = 0; i < list_.Count(); ++i) {
        if (list_.Selected(i)) lines.emplace_back(list_.Line(i));
    }
    if (lines.empty()) return;
    const bool copied = windows_.SetClipboardText(JoinLines(lines));
    windows_.dialogs().MsgBox(
        copied ? "クリップボードにコピーしました。" : "クリップボードにコピーできません。", kTitle);
}

void RecordEditor::mnuContextPaste_Click() {
    const std::string text = windows_.ClipboardText();
    if (text.empty()) {
        windows_.dialogs().MsgBox("貼り付けデータ無し！", kTitle);
        return;
    }
    std::vector<std::string> lines = SplitLines(text);
    const int count = static_cast<int>(lines.size());
    const int first = std::max(list_.ListIndex(), 0);
    Replace(first, std::min(count, list_.Count() - first), std::move(lines));
    list_.SetListIndex(first);
    list_.SelectRange(first, count);
    windows_.dialogs().MsgBox("貼り付け完了！", kTitle);
}

void RecordEditor::Restore(int position, const std::vector<std::string>& from,
                           const std::vector<std::string>& to) {
    if (!Holds(position, from)) {
        history_.Clear(false);
        return;
    }
    const int count = static_cast<int>(to.size());
    Put(position, static_cast<int>(from.size()), to);
    globals_.unsaved = !history_.IsSaved();
    list_.SetListIndex(count > 0 ? position : std::min(position, list_.Count() - 1));
    if (onListChanged) onListChanged();
}

void RecordEditor::mnuUndo_Click() {
    if (const Splice* edit = history_.Undo()) {
        Restore(edit->position, edit->inserted, edit->removed);
    }
}

void RecordEditor::mnuRedo_Click() {
    if (const Splice* edit = history_.Redo()) {
        Restore(edit->position, edit->removed, edit->inserted);
    }
}

void RecordEditor::mnuSelectAll_Click() { list_.SelectRange(0, list_.Count()); }

}  // namespace tamrin
