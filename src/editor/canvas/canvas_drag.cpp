#include "editor/canvas/canvas_drag.h"

#include <algorithm>
#include <cstdlib>

namespace glimmer {

CanvasCursor cursorOverHandle(const Rect& rect, int32_t handle) {
    switch (handleCursor(rect, handle)) {
        case HandleCursor::NorthWestSouthEast:
            return CanvasCursor::NorthWestSouthEast;
        case HandleCursor::NorthEastSouthWest:
            return CanvasCursor::NorthEastSouthWest;
        case HandleCursor::Vertical:
            return CanvasCursor::Vertical;
        case HandleCursor::Horizontal:
            break;
    }
    return CanvasCursor::Horizontal;
}

Rect spanned(Point a, Point b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x) + 1, std::max(a.y, b.y) + 1};
}

Point squared(Point from, Point to) {
    const int32_t side = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
    return {from.x + (to.x < from.x ? -side : side), from.y + (to.y < from.y ? -side : side)};
}

Point straightened(Point from, Point to) {
    const int32_t dx = std::abs(to.x - from.x);
    const int32_t dy = std::abs(to.y - from.y);
    if (dx > 2 * dy) return {to.x, from.y};
    if (dy > 2 * dx) return {from.x, to.y};
    return squared(from, to);
}

}  // namespace glimmer
