#include "editor/canvas/key_moves.h"

#include <algorithm>
#include <utility>

#include "editor/canvas/area_drag.h"

namespace glimmer {

namespace {

constexpr int32_t smallStep = 1;
constexpr int32_t largeStep = 10;

}  // namespace

std::optional<Point> KeyMoves::way(Key key, Modifiers held) {
    const int32_t step = held.shift ? largeStep : smallStep;
    switch (key) {
        case Key::Left:
            return Point{-step, 0};
        case Key::Right:
            return Point{step, 0};
        case Key::Up:
            return Point{0, -step};
        case Key::Down:
            return Point{0, step};
        default:
            return std::nullopt;
    }
}

bool KeyMoves::area(Point way, Modifiers held) const {
    Selection area = context_.document.selection();
    if (!hasHandles(area)) return false;
    const Rect now = area.rect;
    const Rect moved =
        held.ctrl ? Rect{now.left, now.top, now.right + way.x, now.bottom + way.y} : now.moved(way.x, way.y);
    if (moved.empty() || moved.intersected(context_.picture()) != moved) return true;
    area.rect = moved;
    context_.document.select(std::move(area));
    return true;
}

bool KeyMoves::annotation(Point way, Modifiers held) {
    const TBBShape* selected = context_.document.selectedAnnotation();
    if (selected == nullptr || (held.ctrl && held.alt)) return false;
    TBBShape shape = *selected;
    if (!gesture_.underWay() || moved_ != shape.id()) gesture_ = context_.document.beginGesture();
    moved_ = shape.id();
    if (held.ctrl) {
        const Rect rect = shape.shape.rectangle;
        shape.setShapeRect({rect.left, rect.top, std::max(rect.left + 1, rect.right + way.x),
                            std::max(rect.top + 1, rect.bottom + way.y)});
    } else if (held.alt) {
        // Free, since it would snap back at once.
        shape.text.settings.position = freeTextPosition;
        shape.text.rectangle = shape.text.rectangle.moved(way.x, way.y);
        shape.layOut();
    } else {
        shape.moveBy(way.x, way.y);
    }
    const bool moved = context_.change(std::move(shape), gesture_);
    if (const TBBShape* now = context_.document.selectedAnnotation()) context_.host.reveal(now->handleRect());
    return moved;
}

}  // namespace glimmer
