#pragma once

#include <memory>

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_drag.h"

namespace glimmer {

/// A selected area on its way: it is drawn, moved or resized. The area stays on the picture; selecting is no step of
/// the history.
class AreaDrag final : public CanvasDrag {
public:
    enum class Outline : uint8_t { Rectangle, Ellipse };

    /// A new area from there on; `adding` joins it to what is selected.
    static std::shared_ptr<AreaDrag> drawing(const CanvasContext& context, Point at, Outline outline, bool adding);
    /// The handle of the selected area under the point, or, if it may be moved, its inside; nothing elsewhere.
    static std::shared_ptr<AreaDrag> grabbed(const CanvasContext& context, Point at, bool movable);

    void moveTo(Point at, Modifiers held) override;
    void finish() override;
    void cancel() override;
    [[nodiscard]] std::optional<CanvasCursor> cursor() const override;
    [[nodiscard]] bool drawsArea() const override { return kind_ == Kind::Draw; }

private:
    enum class Kind : uint8_t { Draw, Move, Resize };
    AreaDrag(const CanvasContext& context, Kind kind, Point at);
    void draw(Point at, bool square);
    void carry(Point way);
    void resize(Point way);

    const CanvasContext& context_;
    Kind kind_;
    Point pressedAt_;
    Selection former_;  ///< what was selected when it began
    Outline outline_ = Outline::Rectangle;
    bool adding_ = false;
    int32_t handle_ = noHandle;
};

/// Whether an area has handles: it is a rectangle or an ellipse.
[[nodiscard]] inline bool hasHandles(const Selection& selection) {
    return selection.kind == Selection::Kind::Rectangle || selection.kind == Selection::Kind::Ellipse;
}

}  // namespace glimmer
