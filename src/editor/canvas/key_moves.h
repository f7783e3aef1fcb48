#pragma once

#include <optional>

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_keys.h"

namespace glimmer {

/// Moving and resizing with the arrow keys. Moves of one annotation in a row are one step of the history.
class KeyMoves {
public:
    explicit KeyMoves(const CanvasContext& context) : context_(context) {}

    /// Where an arrow key leads, by one pixel or, with Shift, ten; nothing for other keys.
    [[nodiscard]] static std::optional<Point> way(Key key, Modifiers held);
    /// Moves the selected annotation, with Ctrl resizes it, with Alt moves its label alone; false when it could not
    /// be done, or when there is none.
    bool annotation(Point way, Modifiers held);
    /// Moves the selected area, with Ctrl resizes it, within the picture; false for an area without handles.
    bool area(Point way, Modifiers held) const;
    /// What comes next is a step of its own.
    void end() { gesture_.end(); }

private:
    const CanvasContext& context_;
    Gesture gesture_;
    AnnotationId moved_ = noAnnotation;
};

}  // namespace glimmer
