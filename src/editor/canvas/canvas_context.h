#pragma once

#include <memory>

#include "editor/canvas/canvas_host.h"
#include "editor/canvas/canvas_view.h"
#include "editor/document/document.h"

namespace glimmer {

/// What the parts of the canvas's behaviour share: the capture, the view and the window. All changes of the capture go
/// through it; what cannot be done the window tells the user.
struct CanvasContext {
    CaptureDocument& document;
    CanvasView& view;
    CanvasHost& host;
    int32_t dotsPerInch = 96;

    /// Runs a change, as a step of its own or as a part of an interaction; whether it could be done.
    bool run(std::unique_ptr<UndoCommand> command) const;
    bool run(std::unique_ptr<UndoCommand> command, Gesture& gesture) const;
    /// The annotation of the capture with the same id becomes this one. What is this already makes no step.
    bool change(TBBShape shape) const;
    bool change(TBBShape shape, Gesture& gesture) const;
    /// Puts an annotation on top and selects it.
    bool add(TBBShape shape, Gesture& gesture) const;
    bool remove(AnnotationId id) const;
    void undo() const;

    [[nodiscard]] Rect picture() const { return {0, 0, document.size().width, document.size().height}; }
    /// The pixel of the picture that is nearest to the point.
    [[nodiscard]] Point inside(Point at) const;
    /// Screen pixels at 96 dots per inch as a length in the picture.
    [[nodiscard]] int32_t length(int32_t pixels) const { return view.lengthInPicture(pixels * dotsPerInch / 96); }
    /// How large a handle is to a press, and how near a press must come to a thin thing; in the picture.
    [[nodiscard]] int32_t hitSize() const { return view.lengthInPicture(handleHitSize(dotsPerInch)); }
    [[nodiscard]] HitReach reach() const { return {length(4)}; }
    /// Whether a press at one of them means the other.
    [[nodiscard]] bool touches(Point a, Point b) const;
};

}  // namespace glimmer
