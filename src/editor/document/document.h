#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "common/bitmap.h"
#include "common/geometry.h"
#include "common/result.h"
#include "editor/annotations/shapes_list.h"
#include "editor/annotations/uShapes.h"
#include "editor/document/content.h"
#include "editor/document/gesture.h"
#include "editor/document/selection.h"
#include "editor/document/undo.h"

namespace glimmer {

/// One open capture, without any window: its clean picture, annotations, names and notes, what is selected, and the
/// history of its changes. What the canvas shows, the saver writes and the main window lists.
///
/// Every change goes through run(), so that it can be undone and is announced to the observers; selecting is not a
/// change. User-interface thread only.
class CaptureDocument {
public:
    /// Takes over the picture and brings it to 32 bits. Fails when the picture is empty or memory is short.
    static Result<std::unique_ptr<CaptureDocument>> create(TBitmap picture, CaptureInfo info);
    /// The same for a capture that already has annotations (opened from a file).
    static Result<std::unique_ptr<CaptureDocument>> create(TBitmap picture, CaptureInfo info, TShapesList annotations);

    CaptureDocument(const CaptureDocument&) = delete;
    CaptureDocument& operator=(const CaptureDocument&) = delete;
    CaptureDocument(CaptureDocument&&) = delete;
    CaptureDocument& operator=(CaptureDocument&&) = delete;
    ~CaptureDocument();

    /// The clean background: pixel operations are in it, annotations are not. 32 bits. Wakes a parked capture and
    /// throws std::bad_alloc when there is no room for it.
    [[nodiscard]] const TBitmap& background() const { return content_.picture(); }
    [[nodiscard]] Size size() const { return content_.pictureSize(); }
    [[nodiscard]] const TShapesList& annotations() const { return content_.annotations(); }
    [[nodiscard]] const CaptureInfo& info() const { return content_.info(); }

    /// Gives up the address space of the picture, for a capture that is not shown; background() brings it back. Whether
    /// that was possible. Nothing that points into the picture may be alive.
    bool park() { return content_.parkPicture(); }
    [[nodiscard]] bool parked() const { return content_.pictureParked(); }

    /// Makes a change and puts it on the history (see TUndoRedoStack::run), as a step of its own or as a part of an
    /// interaction. The commands are in editor/commands/.
    Status run(std::unique_ptr<UndoCommand> command);
    Status run(std::unique_ptr<UndoCommand> command, Gesture& gesture);
    Status undo();
    Status redo();
    [[nodiscard]] const TUndoRedoStack& history() const { return history_; }
    /// An interaction that no change so far belongs to.
    [[nodiscard]] Gesture beginGesture() { return Gesture(++lastGesture_); }
    /// Whether what would be undone next was done by this interaction.
    [[nodiscard]] bool newestIs(const Gesture& gesture) const {
        return gesture.used() && history_.newestIs(gesture.number());
    }
    /// What is changed from now on is a step of its own.
    void endGesture() { history_.endGesture(); }
    /// Uses free time to deflate what the history keeps; a few milliseconds a call, false when all is done.
    bool compactSome() { return history_.compactSome(); }

    /// Whether the capture differs from what was last saved or opened. A new capture counts as changed until
    /// markSaved().
    [[nodiscard]] bool modified() const;
    /// The capture as it stands is on the disk now.
    void markSaved();
    /// Whether the pixels or annotations have changed since creation; true also after a save.
    [[nodiscard]] bool touched() const { return history_.depth() > 0; }
    /// Counts every change, undo and redo; two equal numbers mean the same content.
    [[nodiscard]] uint64_t revision() const { return revision_; }

    [[nodiscard]] const Selection& selection() const { return selection_; }
    void select(Selection selection);
    /// The selected annotation (its identity, not its place in the list), noAnnotation when none is.
    [[nodiscard]] AnnotationId selectedId() const { return selected_; }
    [[nodiscard]] const TBBShape* selectedAnnotation() const { return content_.find(selected_); }
    void selectAnnotation(AnnotationId id);

    /// Observers hear of every change after it was made; they may not change the document from within the call.
    using Observer = std::function<void(const DocumentChange&)>;
    [[nodiscard]] int observe(Observer observer);
    void forget(int observer);

private:
    CaptureDocument(TBitmap picture, CaptureInfo info, TShapesList annotations);
    void announce(const DocumentChange& change);
    Status changed(Status status);

    CaptureContent content_;
    TUndoRedoStack history_;
    Selection selection_;
    AnnotationId selected_ = noAnnotation;
    std::optional<uint64_t> savedState_;
    std::vector<std::pair<int, Observer>> observers_;
    int lastObserver_ = 0;
    GestureNumber lastGesture_ = 0;
    uint64_t revision_ = 0;
};

}  // namespace glimmer
