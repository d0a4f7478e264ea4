#include "text/edit_history.h"

#include <utility>

namespace genutil::text {

bool EditHistory::note(Edit edit, bool mayJoin) {
    if (saved_ && *saved_ > done_)
        saved_.reset(); // there is no way back to it
    edits_.resize(done_);
    const bool isJoined = mayJoin && open_ && done_ > 0 && join(edit);
    if (!isJoined) {
        edits_.push_back(std::move(edit));
        ++done_;
    }
    open_ = mayJoin;
    return isJoined;
}

bool EditHistory::join(Edit& edit) {
    Edit& step = edits_.back();
    const auto append = [](PieceTable::Pieces& to, const PieceTable::Pieces& pieces) {
        for (const Piece& piece : pieces)
            PieceTable::append(to, piece);
    };
    const bool inserts = edit.length > 0;
    if (inserts != (step.length > 0))
        return false;
    if (edit.offset == step.offset + step.length) {
        append(step.other, edit.other);
        step.length += edit.length;
        return true;
    }
    if (!inserts && edit.offset + PieceTable::lengthOf(edit.other) == step.offset) {
        append(edit.other, step.other);
        step.other = std::move(edit.other);
        step.offset = edit.offset;
        return true;
    }
    return false;
}

Edit* EditHistory::undo() {
    open_ = false;
    return canUndo() ? &edits_[--done_] : nullptr;
}

Edit* EditHistory::redo() {
    open_ = false;
    return canRedo() ? &edits_[done_++] : nullptr;
}

void EditHistory::markSaved() {
    open_ = false;
    saved_ = done_;
}

} // namespace genutil::text
