#include "editor/annotations/shape_geometry.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

#include "common/assertion.h"

namespace glimmer {

namespace {

enum class Side : uint8_t { Above, Below, Left, Right };

constexpr Side sideOf(int32_t position) { return static_cast<Side>((position - 1) / 3); }
/// 0 left or top, 1 middle, 2 right or bottom.
constexpr int32_t anchorOf(int32_t position) { return (position - 1) % 3; }
constexpr bool isVerticalSide(int32_t position) {
    return sideOf(position) == Side::Above || sideOf(position) == Side::Below;
}

/// The coordinate of the anchor on an edge from `low` to `high`.
constexpr int32_t anchorAt(int32_t anchor, int32_t low, int32_t high) {
    return anchor == 0 ? low : anchor == 1 ? middle(low, high) : high;
}
/// Start of a label of that length whose anchor lies at `at`.
constexpr int32_t startFor(int32_t anchor, int32_t at, int32_t length) {
    return anchor == 0 ? at : anchor == 1 ? at - length / 2 : at - length;
}

/// x of the vertical and y of the horizontal guide of a position; the label touches both.
Point guidePoint(const Rect& shape, int32_t position) {
    const int32_t anchor = anchorOf(position);
    switch (sideOf(position)) {
        case Side::Above:
            return {anchorAt(anchor, shape.left, shape.right), shape.top - labelDistance};
        case Side::Below:
            return {anchorAt(anchor, shape.left, shape.right), shape.bottom + labelDistance};
        case Side::Left:
            return {shape.left - labelDistance, anchorAt(anchor, shape.top, shape.bottom)};
        case Side::Right:
            break;
    }
    return {shape.right + labelDistance, anchorAt(anchor, shape.top, shape.bottom)};
}

bool isPosition(int32_t position) { return position >= minTextPosition && position <= maxTextPosition; }

/// Scaled for the screen and made odd.
int32_t oddScaled(int32_t pixels, int32_t dotsPerInch) {
    return std::max<int32_t>(1, pixels * std::clamp(dotsPerInch, 24, 960) / 96) | 1;
}

struct HandlePlace {
    int32_t x;  ///< 0 left, 1 middle, 2 right
    int32_t y;  ///< 0 top, 1 middle, 2 bottom
};
constexpr HandlePlace handlePlaces[handleCount] = {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 2}, {0, 2}, {0, 1}};

HandlePlace placeOf(int32_t handle) {
    GLIMMER_ASSERT(handle >= 0 && handle < handleCount, "nGrabId>=0&&nGrabId<8", "uShapes");
    return handlePlaces[handle];
}

/// Where the two ranges come nearest: a in the first, b in the second; both in the middle of what they share.
void nearest(int32_t low1, int32_t high1, int32_t low2, int32_t high2, int32_t& a, int32_t& b) {
    if (high1 < low2) {
        a = high1;
        b = low2;
    } else if (high2 < low1) {
        a = low1;
        b = high2;
    } else {
        a = b = middle(std::max(low1, low2), std::min(high1, high2));
    }
}

/// The point of the ellipse in `rect` on the way from its centre to `target`.
Point onEllipse(const Rect& rect, Point target) {
    const double cx = (rect.left + static_cast<double>(rect.right)) / 2;
    const double cy = (rect.top + static_cast<double>(rect.bottom)) / 2;
    const double dx = target.x - cx;
    const double dy = target.y - cy;
    const double scaled = std::hypot(2 * dx / std::max(1, rect.width()), 2 * dy / std::max(1, rect.height()));
    if (scaled == 0) return target;
    return {static_cast<int32_t>(cx + dx / scaled), static_cast<int32_t>(cy + dy / scaled)};
}

}  // namespace

Rect labelRect(const Rect& shape, Size label, int32_t position) {
    GLIMMER_ASSERT(isPosition(position), "nPosition>=1&&nPosition<=12", "uShapes");
    const Point guide = guidePoint(shape, position);
    const int32_t anchor = anchorOf(position);
    Point at = guide;
    if (isVerticalSide(position)) {
        at.x = startFor(anchor, guide.x, label.width);
        if (sideOf(position) == Side::Above) at.y -= label.height;
    } else {
        at.y = startFor(anchor, guide.y, label.height);
        if (sideOf(position) == Side::Left) at.x -= label.width;
    }
    return {at.x, at.y, at.x + label.width, at.y + label.height};
}

std::vector<GuideLine> positionGuides(const Rect& shape, int32_t position) {
    GLIMMER_ASSERT(isPosition(position), "nPosition>=1&&nPosition<=12", "uShapes");
    const Point guide = guidePoint(shape, position);
    return {{true, guide.x}, {false, guide.y}};
}

std::vector<GuideLine> freeLabelGuides(const Rect& shape, const Rect& label) {
    const auto reaches = [](int32_t a, int32_t b) { return std::abs(a - b) < guideReach; };
    std::vector<GuideLine> guides;
    const auto edge = [&](bool vertical, int32_t at, int32_t near, int32_t far) {
        if (reaches(near, at) || reaches(far, at)) guides.push_back({vertical, at});
    };
    edge(true, shape.left, label.left, label.right);
    edge(true, shape.right, label.right, label.left);
    edge(false, shape.top, label.top, label.bottom);
    edge(false, shape.bottom, label.bottom, label.top);
    const int32_t middleX = middle(shape.left, shape.right);
    const int32_t middleY = middle(shape.top, shape.bottom);
    edge(true, middleX, middle(label.left, label.right), middle(label.left, label.right));
    edge(false, middleY, middle(label.top, label.bottom), middle(label.top, label.bottom));
    return guides;
}

int32_t snappedPosition(const Rect& shape, const Rect& label, int32_t reach) {
    int32_t best = freeTextPosition;
    int32_t bestDistance = INT32_MAX;
    for (int32_t position = minTextPosition; position <= maxTextPosition; ++position) {
        const Rect place = labelRect(shape, {label.width(), label.height()}, position);
        const int32_t dx = std::abs(place.left - label.left);
        const int32_t dy = std::abs(place.top - label.top);
        if (dx < reach && dy < reach && dx + dy < bestDistance) {
            best = position;
            bestDistance = dx + dy;
        }
    }
    return best;
}

int32_t handleSize(int32_t dotsPerInch) { return oddScaled(7, dotsPerInch); }

int32_t handleHitSize(int32_t dotsPerInch) { return std::max(11, oddScaled(11, dotsPerInch)); }

Point handlePoint(const Rect& rect, int32_t handle) {
    const HandlePlace place = placeOf(handle);
    return {anchorAt(place.x, rect.left, rect.right), anchorAt(place.y, rect.top, rect.bottom)};
}

int32_t handleAt(const Rect& rect, Point point, int32_t hitSize) {
    int32_t best = noHandle;
    int32_t bestDistance = INT32_MAX;
    for (int32_t handle = 0; handle < handleCount; ++handle) {
        const Point at = handlePoint(rect, handle);
        const int32_t dx = std::abs(at.x - point.x);
        const int32_t dy = std::abs(at.y - point.y);
        if (dx <= hitSize / 2 && dy <= hitSize / 2 && dx + dy < bestDistance) {
            best = handle;
            bestDistance = dx + dy;
        }
    }
    return best;
}

Rect resizedByHandle(const Rect& rect, int32_t handle, int32_t dx, int32_t dy) {
    const HandlePlace place = placeOf(handle);
    Rect result = rect;
    if (place.x == 0) result.left += dx;
    if (place.x == 2) result.right += dx;
    if (place.y == 0) result.top += dy;
    if (place.y == 2) result.bottom += dy;
    return result;
}

HandleCursor handleCursor(const Rect& rect, int32_t handle) {
    placeOf(handle);  // asserts
    const bool exchanged = (rect.right < rect.left) != (rect.bottom < rect.top);
    switch (handle % 4) {
        case 0:
            return exchanged ? HandleCursor::NorthEastSouthWest : HandleCursor::NorthWestSouthEast;
        case 1:
            return HandleCursor::Vertical;
        case 2:
            return exchanged ? HandleCursor::NorthWestSouthEast : HandleCursor::NorthEastSouthWest;
        default:
            return HandleCursor::Horizontal;
    }
}

std::optional<LineRoute> lineRoute(const Rect& shape, bool ellipse, const Rect& label) {
    const Rect from = shape.normalized();
    const Rect to = label.normalized();
    LineRoute route;
    nearest(from.left, from.right, to.left, to.right, route.front.x, route.back.x);
    nearest(from.top, from.bottom, to.top, to.bottom, route.front.y, route.back.y);
    if (route.front == route.back) return std::nullopt;
    if (ellipse) route.front = onEllipse(from, route.back);
    return route;
}

double arrowHalfBase(int32_t lineWidth) {
    return arrowLength(lineWidth) * std::tan(arrowHalfAngle * std::numbers::pi / 180);
}

Rect badgeRect(const Rect& shape, NumberPosition position) {
    const Rect rect = shape.normalized();
    const int32_t side = 2 * badgeRadius;
    Point at;
    switch (position) {
        case NumberPosition::OutsideTopLeft:
            at = {rect.left - side, rect.top - side};
            break;
        case NumberPosition::InsideTopLeft:
            at = {rect.left, rect.top};
            break;
        case NumberPosition::InsideCentre:
            at = {middle(rect.left, rect.right) - badgeRadius, middle(rect.top, rect.bottom) - badgeRadius};
            break;
        case NumberPosition::InsideBottomRight:
            at = {rect.right - side, rect.bottom - side};
            break;
    }
    return {at.x, at.y, at.x + side, at.y + side};
}

double squaredDistance(Point point, Point a, Point b) {
    const double dx = static_cast<double>(b.x) - a.x;
    const double dy = static_cast<double>(b.y) - a.y;
    const double px = static_cast<double>(point.x) - a.x;
    const double py = static_cast<double>(point.y) - a.y;
    const double length = dx * dx + dy * dy;
    const double along = length == 0 ? 0 : std::clamp((px * dx + py * dy) / length, 0.0, 1.0);
    const double x = px - along * dx;
    const double y = py - along * dy;
    return x * x + y * y;
}

bool ellipseContains(const Rect& rect, Point point) {
    if (rect.empty()) return false;
    // The pixel's middle against the ellipse, in units of the half axes.
    const double x = (2.0 * point.x + 1 - rect.left - rect.right) / rect.width();
    const double y = (2.0 * point.y + 1 - rect.top - rect.bottom) / rect.height();
    return x * x + y * y <= 1;
}

Rect clampRect(const Rect& rect) {
    return {clampCoordinate(rect.left), clampCoordinate(rect.top), clampCoordinate(rect.right),
            clampCoordinate(rect.bottom)};
}

}  // namespace glimmer
