#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "common/geometry.h"
#include "editor/annotations/shape_settings.h"

// Where the parts of an annotation sit: pure functions of rectangles. Halves are rounded toward zero.

namespace glimmer {

/// Pixels from the shape's edge to a label in one of the twelve positions.
constexpr int32_t labelDistance = 40;
/// A free label nearer than this to an edge or centre of the shape shows the guide there; a dragged label nearer
/// than this to one of the twelve places snaps to it.
constexpr int32_t guideReach = 10;
constexpr Colour guideColour = 0x9D6A00;

/// The place of a label of the given size at one of the twelve positions of the shape.
Rect labelRect(const Rect& shape, Size label, int32_t position);

/// A line across the whole canvas: vertical at x, or horizontal at y.
struct GuideLine {
    bool vertical = false;
    int32_t at = 0;
    bool operator==(const GuideLine&) const = default;
};

/// The two guides that mark one of the twelve positions: first the vertical, then the horizontal one.
std::vector<GuideLine> positionGuides(const Rect& shape, int32_t position);
/// The alignment guides of a free label, in the order left, right, top, bottom, middle x, middle y of the shape.
/// An edge is compared first with the label's same edge, then with its opposite one.
std::vector<GuideLine> freeLabelGuides(const Rect& shape, const Rect& label);
/// The position whose place lies less than `reach` pixels away from the label in both directions, the nearest
/// one; freeTextPosition when there is none.
int32_t snappedPosition(const Rect& shape, const Rect& label, int32_t reach = guideReach);

// Handles: 0 top-left, then clockwise to 7 left edge.

constexpr int32_t handleCount = 8;
constexpr int32_t noHandle = -1;
/// Side of a handle as drawn, and of the area that takes a press, in screen pixels. Both are odd, so that a handle
/// has a middle pixel.
int32_t handleSize(int32_t dotsPerInch);
int32_t handleHitSize(int32_t dotsPerInch);
/// The point that a handle stands on. A number outside 0 to 7 is an assertion.
Point handlePoint(const Rect& rect, int32_t handle);
/// The handle whose square of `hitSize` pixels holds the point; of several, the nearest. noHandle when none does.
int32_t handleAt(const Rect& rect, Point point, int32_t hitSize);
/// The rectangle after the handle was dragged by (dx, dy); may come out inverted.
Rect resizedByHandle(const Rect& rect, int32_t handle, int32_t dx, int32_t dy);

enum class HandleCursor : uint8_t {
    NorthWestSouthEast,  ///< like a backslash
    Vertical,
    NorthEastSouthWest,  ///< like a slash
    Horizontal,
};
/// The cursor over a handle of the rectangle as it stands; with exactly one dimension inverted the diagonals
/// change places.
HandleCursor handleCursor(const Rect& rect, int32_t handle);

// The line.

struct LineRoute {
    Point front;  ///< on the shape's edge
    Point back;   ///< on the label's edge, the point of it nearest to the shape
    bool operator==(const LineRoute&) const = default;
};
/// The line from the shape to the label. Where the two lie side by side it runs straight across the middle of
/// what they share; otherwise from corner to corner. An ellipse is met where the way to its centre crosses it.
/// Nothing when the two overlap or touch.
std::optional<LineRoute> lineRoute(const Rect& shape, bool ellipse, const Rect& label);

/// Length of an arrow head and radius of a bullet for a line of that width; half the head's opening in degrees.
constexpr int32_t arrowLength(int32_t lineWidth) { return 4 + 3 * lineWidth; }
constexpr int32_t bulletRadius(int32_t lineWidth) { return 2 + lineWidth; }
constexpr double arrowHalfAngle = 25.0;
/// Half the base of an arrow head, in pixels.
double arrowHalfBase(int32_t lineWidth);

/// Half the side of the number badge's picture.
constexpr int32_t badgeRadius = 16;
/// Square of the number badge.
Rect badgeRect(const Rect& shape, NumberPosition position);

/// Square of the distance from a point to the segment a-b.
double squaredDistance(Point point, Point a, Point b);
/// Whether a point lies in the ellipse that fills the rectangle.
bool ellipseContains(const Rect& rect, Point point);

/// Every coordinate brought into -maxCoordinate..maxCoordinate.
Rect clampRect(const Rect& rect);

}  // namespace glimmer
