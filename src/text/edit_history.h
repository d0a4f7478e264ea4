#pragma once

#include "text/line_index.h"
#include "text/piece_table.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace genutil::text {

// One step of undoing or redoing: what lies at `offset` in the text, and what lies there when the step is
// taken.
struct Edit {
    std::uint64_t offset = 0;
    std::uint64_t length = 0; // bytes
    PieceTable::Pieces other;
    WidestLine otherWidest;
};

// The steps that led to the text, and those that were undone.
class EditHistory {
public:
    // Notes an edit that has been made. One that may join becomes part of the step before, if that was open
    // to it and the edit goes on where it ended: typing at its end, or deleting from its start forward or
    // backward. Whether it has become part of that step.
    bool note(Edit edit, bool mayJoin);
    // What follows starts a new step.
    void endStep() { open_ = false; }

    // The step to be taken next, for the caller to exchange with the text; nullptr when there is none.
    Edit* undo();
    Edit* redo();
    bool canUndo() const { return done_ > 0; }
    bool canRedo() const { return done_ < edits_.size(); }
    std::size_t depth() const { return done_; }

    bool isAtStart() const { return done_ == 0; }
    bool isSaved() const { return saved_ == done_; }
    void markSaved();

private:
    bool join(Edit& edit);

    std::vector<Edit> edits_;
    std::size_t done_ = 0; // edits before this one are in the text
    std::optional<std::size_t> saved_ = 0;
    bool open_ = false;
};

} // namespace genutil::text
