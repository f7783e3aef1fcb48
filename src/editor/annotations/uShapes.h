#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "editor/annotations/shape_geometry.h"
#include "editor/annotations/shape_parts.h"
#include "editor/annotations/shape_settings.h"
#include "editor/annotations/styles.h"

namespace glimmer {

/// Everything that makes an annotation, as one flat value: what files and the clipboard keep.
struct TShapeDescriptor {
    uint32_t id = 0;    ///< unique in its list; 0: not yet in one
    TShapeStyle style;  ///< the four parts' settings and the name of the style they came from
    Rect shapeRect;
    Rect textRect;
    std::string text;
    int32_t number = 0;
    std::shared_ptr<const TBitmap> drawing;

    /// Drawings are compared by their pixels.
    bool operator==(const TShapeDescriptor& other) const;
};

/// Brings everything into its range, rectangles normalised. A drawing without a picture gets an empty one.
void clampDescriptor(TShapeDescriptor& descriptor);

/// Index of a part; the editor's controls for it carry the tag index + 1.
enum class Part : uint8_t { Shape = 0, Text = 1, Line = 2, Number = 3 };
constexpr size_t partCount = 4;

/// An annotation: a shape, a label, a line between them and a step number, each of which may be hidden. A value:
/// copies are independent and cheap, and == compares what the user would see or save, not a drag under way.
class TBBShape {
public:
    TBBShape() = default;
    /// A new annotation over `rect` (normalised) with the given settings and an empty label.
    TBBShape(const TShapeStyle& settings, const Rect& rect);
    explicit TBBShape(const TShapeDescriptor& descriptor);

    [[nodiscard]] TShapeDescriptor describe() const;
    bool operator==(const TBBShape& other) const;

    /// Unique in its list, given by it, stable through moves, undo and saving; 0 outside a list.
    [[nodiscard]] uint32_t id() const { return id_; }
    void setId(uint32_t id) { id_ = id; }
    /// The style that the settings came from; empty when none.
    std::string styleName;

    // The parts. Their fields may be changed freely; call layOut() after a change of the shape's rectangle, the
    // label's size or its position.
    TShapeObject shape;
    TTextObject text;
    TLineObject line;
    TNumberObject number;
    [[nodiscard]] TDrawObject& part(Part index);
    [[nodiscard]] const TDrawObject& part(Part index) const;

    [[nodiscard]] bool anyVisible() const;

    /// Puts the label in its place around the shape (a free label stays) and keeps all coordinates in range.
    void layOut();
    /// Moves shape and label.
    void moveBy(int32_t dx, int32_t dy);
    /// Moves the label alone; it snaps to the twelve positions and is free elsewhere.
    void moveLabelTo(Point topLeft);
    /// 1 to 12, or freeTextPosition, which leaves the label where it is.
    void setTextPosition(int32_t position);
    void setShapeRect(const Rect& rect);
    /// Gives the label that size in its place; a free label keeps its top left corner.
    void setLabelSize(Size size);

    /// The line's way, or nothing when shape and label touch.
    [[nodiscard]] std::optional<LineRoute> route() const;
    /// An end of the line that stands on nothing that is shown, and can therefore be dragged by itself.
    struct FreeEnd {
        bool front = false;  ///< the end at the (hidden) shape; else that at the (hidden) label
        Point at;
    };
    [[nodiscard]] std::vector<FreeEnd> freeLineEnds() const;
    /// Moves what a free end stands on. The label becomes free, since it would move along or spring back.
    void moveFreeEnd(bool front, int32_t dx, int32_t dy);
    /// Around all visible parts, with room for shadows; empty when no part is visible. Everything that painting
    /// may touch lies inside.
    [[nodiscard]] Rect bounds() const;
    /// The guides to show while the label is dragged.
    [[nodiscard]] std::vector<GuideLine> guides() const;
    /// The topmost visible part under the point.
    [[nodiscard]] std::optional<Part> partAt(Point point, const HitReach& reach = {}) const;

    /// The rectangle that the handles stand on: the label's while the label is the active part, or when the shape
    /// is hidden and the label is not; otherwise the shape's.
    [[nodiscard]] Rect handleRect() const;
    /// The part that the handles resize.
    [[nodiscard]] Part handlePart() const;
    /// Whether there are handles: the part that they would resize is shown.
    [[nodiscard]] bool hasHandles() const { return part(handlePart()).isVisible(); }

    // Pressing, in this order: when the annotation is selected, grabHandleAt(); then mouseDown(), mouseMove() as
    // often as the mouse moves, and mouseUp(). All points are in image pixels.

    /// Grabs the handle at the point, if there is one, and makes its part the active one. `hitSize` is in image
    /// pixels.
    bool grabHandleAt(Point point, int32_t hitSize);
    /// True when a part took the press. An active part that holds a handle gets it alone; an active part that
    /// holds none means that all four are asked, and the topmost that took it becomes the active one; with a
    /// hidden active part the first visible one gets it. Asserts that some part is visible.
    bool mouseDown(Point point, const HitReach& reach = {});
    void mouseMove(Point point);
    /// Ends the drag; an inverted rectangle is turned right.
    void mouseUp();
    /// Brings it to what a list keeps, which nothing of what is seen depends on: no press is under way, the shape is
    /// the active part, and a shape that is no drawing has no ink from when it was one (a file would hold it).
    void settle();
    [[nodiscard]] Part activePart() const { return activePart_; }
    void setActivePart(Part index) { activePart_ = index; }
    /// The handle held by the active part, or noHandle.
    [[nodiscard]] int32_t activeHandle() const { return part(activePart_).activeHandle(); }

    /// Takes the style's settings and name. Label and badge stay where they are. The parts' visibility is taken
    /// over only on request (the option "Styles remember elements Visibility").
    void applyStyle(const TShapeStyle& style, bool withVisibility);
    /// The settings as they are now.
    [[nodiscard]] TShapeStyle settings() const;
    /// Takes all settings and the name as they are; places and sizes stay.
    void setSettings(const TShapeStyle& settings);

private:
    uint32_t id_ = 0;
    Part activePart_ = Part::Shape;
};

/// An annotation that shows a picture (Bgra32, straight alpha) with its top left corner at that place, and nothing
/// else. Its hidden parts have the style's settings.
TBBShape pictureAnnotation(TShapeStyle style, TBitmap picture, Point at);

/// Annotations in some order other than the painting order; owned by a list, valid until that list changes.
using TShapesDeque = std::deque<TBBShape*>;

/// Room around an annotation that its shadow may take, in pixels.
constexpr int32_t shadowReach = 6;

}  // namespace glimmer
