#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/result.h"

namespace glimmer {

class CaptureContent;

/// One change of a capture that can be taken back and made again. Each kind of change is a small class in
/// editor/commands/. Only the stack calls apply() and revert(), in strict turn, so that a command may rely on the
/// content being exactly as it left it.
class UndoCommand {
public:
    UndoCommand() = default;
    virtual ~UndoCommand() = default;
    UndoCommand(const UndoCommand&) = delete;
    UndoCommand& operator=(const UndoCommand&) = delete;
    UndoCommand(UndoCommand&&) = delete;
    UndoCommand& operator=(UndoCommand&&) = delete;

    /// Makes the change. Fails only for want of memory; the content is then as before.
    virtual Status apply(CaptureContent& content) = 0;
    /// Takes the change back; fails as apply() does.
    virtual Status revert(CaptureContent& content) = 0;
    /// Takes the applied command `next` of the same gesture into this one, so that both are one step. False when
    /// it is another kind of change or of another object.
    virtual bool mergeWith(UndoCommand& next) {
        static_cast<void>(next);
        return false;
    }
    /// Deflates a piece of what is kept plain; false when nothing is left to do. Called when the program has time,
    /// and before memory piles up.
    virtual bool compactSome() { return false; }
    /// Bytes kept for the sake of this step.
    [[nodiscard]] virtual size_t byteCount() const { return 0; }
};

/// Which changes belong together: those made with the same gesture number other than 0 (one drag, one slider pull,
/// one stretch of typing) become one step.
using GestureNumber = uint32_t;

/// One step of the history.
struct _TUndoRedoStruct {  // NOLINT(bugprone-reserved-identifier): the record's name throughout the program
    std::unique_ptr<UndoCommand> command;
    GestureNumber gesture = 0;
    uint64_t serial = 0;  ///< counts the states of the capture, so that the saved one is known again
};

/// The history of one capture. Its depth is not limited; what a step keeps is small (see PackedPixels).
class TUndoRedoStack {
public:
    explicit TUndoRedoStack(CaptureContent& content) : content_(content) {}

    /// Applies the command and puts it on the history; what could have been redone is forgotten. On failure
    /// nothing has changed.
    Status run(std::unique_ptr<UndoCommand> command, GestureNumber gesture = 0);
    /// One step back or forth; nothing happens at the end of the history.
    Status undo();
    Status redo();
    /// Undo and redo as one operation with a direction.
    Status step(bool forward) { return forward ? redo() : undo(); }

    [[nodiscard]] bool canUndo() const { return done_ > 0; }
    [[nodiscard]] bool canRedo() const { return done_ < steps_.size(); }
    /// Steps that can be undone.
    [[nodiscard]] size_t depth() const { return done_; }
    /// Whether the step that would be undone next belongs to this gesture.
    [[nodiscard]] bool newestIs(GestureNumber gesture) const {
        return done_ > 0 && steps_[done_ - 1].gesture == gesture;
    }
    /// The next command starts a step of its own, whatever its gesture.
    void endGesture() { merging_ = false; }

    /// A number that is the same exactly when the content is the same state of this history.
    [[nodiscard]] uint64_t state() const { return done_ == 0 ? 0 : steps_[done_ - 1].serial; }
    /// Deflates a piece of what steps still keep plain (a few milliseconds); false when nothing is left.
    bool compactSome();
    [[nodiscard]] size_t byteCount() const;

private:
    void compactAll();

    CaptureContent& content_;
    std::vector<_TUndoRedoStruct> steps_;
    size_t done_ = 0;       ///< steps_[0 .. done_) are in effect
    size_t compacted_ = 0;  ///< the steps before have been asked to compact since they last moved
    uint64_t serial_ = 0;
    bool merging_ = false;
};

}  // namespace glimmer
