#pragma once

#include <cstdint>
#include <optional>

#include "editor/annotations/uShapes.h"
#include "editor/canvas/canvas_keys.h"

namespace glimmer {

enum class CanvasCursor : uint8_t {
    Arrow,
    Cross,
    Move,
    NorthWestSouthEast,
    NorthEastSouthWest,
    Vertical,
    Horizontal,
    Pen,
    Eraser,
};
/// The cursor over a handle of that rectangle.
CanvasCursor cursorOverHandle(const Rect& rect, int32_t handle);

/// A drag that is under way, from the press that made it on. All that a drag does is one step of the history.
class CanvasDrag {
public:
    CanvasDrag() = default;
    virtual ~CanvasDrag() = default;
    CanvasDrag(const CanvasDrag&) = delete;
    CanvasDrag& operator=(const CanvasDrag&) = delete;
    CanvasDrag(CanvasDrag&&) = delete;
    CanvasDrag& operator=(CanvasDrag&&) = delete;

    /// The mouse is there now, a pixel of the picture or one beside it.
    virtual void moveTo(Point at, Modifiers held) = 0;
    /// The button was let go, or the mouse taken away. Then, or after cancel(), it is over.
    virtual void finish() = 0;
    /// What was done so far is taken back.
    virtual void cancel() = 0;
    /// Whether there is nothing to take back: a press that is all it takes.
    [[nodiscard]] virtual bool idle() const { return false; }

    /// The cursor for as long as it lasts; nothing when that depends on what lies under the pointer.
    [[nodiscard]] virtual std::optional<CanvasCursor> cursor() const { return std::nullopt; }
    /// The annotation as the drag has it, or nothing.
    [[nodiscard]] virtual const TBBShape* annotation() const { return nullptr; }
    /// Whether the annotation's guides are shown.
    [[nodiscard]] virtual bool guided() const { return false; }
    /// Whether the selected area is just being drawn, so that it has no handles yet.
    [[nodiscard]] virtual bool drawsArea() const { return false; }
};

/// The button is held and nothing moves with the mouse.
class IdleDrag final : public CanvasDrag {
public:
    void moveTo(Point /*at*/, Modifiers /*held*/) override {}
    void finish() override {}
    void cancel() override {}
    [[nodiscard]] bool idle() const override { return true; }
};

/// The rectangle of both pixels and all between them.
Rect spanned(Point a, Point b);
/// The corner of a square around `from` that is nearest to the mouse.
Point squared(Point from, Point to);
/// The end of a level, upright or diagonal line that is nearest to the mouse.
Point straightened(Point from, Point to);

}  // namespace glimmer
