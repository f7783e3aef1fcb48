#include "editor/document/undo.h"

#include <algorithm>
#include <utility>

namespace glimmer {

Status TUndoRedoStack::run(std::unique_ptr<UndoCommand> command, GestureNumber gesture) {
    compactAll();
    if (Status applied = command->apply(content_); !applied) return applied;
    steps_.resize(done_);
    compacted_ = std::min(compacted_, done_);
    ++serial_;
    if (merging_ && gesture != 0 && done_ > 0 && steps_.back().gesture == gesture &&
        steps_.back().command->mergeWith(*command)) {
        steps_.back().serial = serial_;
        return {};
    }
    steps_.push_back({std::move(command), gesture, serial_});
    ++done_;
    merging_ = true;
    return {};
}

Status TUndoRedoStack::undo() {
    if (!canUndo()) return {};
    compactAll();
    if (Status reverted = steps_[done_ - 1].command->revert(content_); !reverted) return reverted;
    --done_;
    compacted_ = std::min(compacted_, done_);
    merging_ = false;
    return {};
}

Status TUndoRedoStack::redo() {
    if (!canRedo()) return {};
    compactAll();
    if (Status applied = steps_[done_].command->apply(content_); !applied) return applied;
    compacted_ = std::min(compacted_, done_);
    ++done_;
    merging_ = false;
    return {};
}

bool TUndoRedoStack::compactSome() {
    while (compacted_ < steps_.size()) {
        if (steps_[compacted_].command->compactSome()) return true;
        ++compacted_;
    }
    return false;
}

// Plain pixels of at most one step are kept, whatever the pace of the user.
void TUndoRedoStack::compactAll() {
    while (compactSome()) {
    }
}

size_t TUndoRedoStack::byteCount() const {
    size_t sum = steps_.capacity() * sizeof(_TUndoRedoStruct);
    for (const _TUndoRedoStruct& step : steps_) sum += step.command->byteCount();
    return sum;
}

}  // namespace glimmer
