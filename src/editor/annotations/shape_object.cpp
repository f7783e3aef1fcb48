#include <cmath>

#include "common/assertion.h"
#include "editor/annotations/uShapes.h"

namespace glimmer {

// --- what all parts share

bool TDrawObject::mouseDown(TBBShape& owner, Point point, const HitReach& reach) {
    if (!isVisible()) return false;
    if (activeHandle_ == noHandle && !hit(owner, point, reach)) return false;
    dragging_ = true;
    pressedAt_ = lastAt_ = point;
    return true;
}

void TDrawObject::grabHandle(int32_t handle) {
    GLIMMER_ASSERT(handle >= 0 && handle < handleCount, "nGrabId>=0&&nGrabId<8", "uShapes");
    activeHandle_ = handle;
}

void TDrawObject::release(TBBShape& /*owner*/) { letGo(); }

void TDrawObject::letGo() {
    activeHandle_ = noHandle;
    dragging_ = false;
}

Point TDrawObject::step(Point point) {
    const Point way = {point.x - lastAt_.x, point.y - lastAt_.y};
    lastAt_ = point;
    return way;
}

Rect TDrawObject::resized(Point point) const {
    GLIMMER_ASSERT(activeHandle_ != noHandle, "nActiveGrabId != -1", "uShapes");
    return clampRect(resizedByHandle(startRect_, activeHandle_, point.x - pressedAt_.x, point.y - pressedAt_.y));
}

// --- the shape

namespace {

/// Whether some ink lies within `reach` pixels of the point, or the drawing has none at all.
bool hitsInk(const TBitmap& picture, const Rect& rect, Point point, int32_t reach) {
    // The picture is stretched to the rectangle; look at the pixels that the square around the point covers.
    const auto toPicture = [](int32_t at, int32_t low, int32_t length, int32_t pixels) {
        return static_cast<int32_t>(std::floor((static_cast<double>(at) - low) * pixels / length));
    };
    const int32_t left = toPicture(point.x - reach, rect.left, rect.width(), picture.width());
    const int32_t right = toPicture(point.x + reach, rect.left, rect.width(), picture.width());
    const int32_t top = toPicture(point.y - reach, rect.top, rect.height(), picture.height());
    const int32_t bottom = toPicture(point.y + reach, rect.top, rect.height(), picture.height());
    for (int32_t y = std::max(0, top); y <= std::min(bottom, picture.height() - 1); ++y)
        for (int32_t x = std::max(0, left); x <= std::min(right, picture.width() - 1); ++x)
            if (picture.alpha(x, y) != 0) return true;
    for (int32_t y = 0; y < picture.height(); ++y)
        for (int32_t x = 0; x < picture.width(); ++x)
            if (picture.alpha(x, y) != 0) return false;
    return true;
}

}  // namespace

bool TShapeObject::isFilled() const {
    return settings.kind == ShapeKind::FilledRectangle || settings.kind == ShapeKind::FilledEllipse;
}

bool TShapeObject::isEllipse() const {
    return settings.kind == ShapeKind::FilledEllipse || settings.kind == ShapeKind::Ellipse;
}

void TShapeObject::boundingRect(const TBBShape& /*owner*/, Rect& rect) const { rect = rectangle.normalized(); }

bool TShapeObject::hit(const TBBShape& /*owner*/, Point point, const HitReach& reach) const {
    const Rect rect = rectangle.normalized();
    const Rect outer = rect.inflated(reach.line);
    if (!outer.contains(point)) return false;
    const Rect inner = rect.inflated(-settings.frameWidth - reach.line);
    switch (settings.kind) {
        case ShapeKind::FilledRectangle:
            return true;
        case ShapeKind::Rectangle:
            return !inner.contains(point);
        case ShapeKind::FilledEllipse:
            return ellipseContains(outer, point);
        case ShapeKind::Ellipse:
            return ellipseContains(outer, point) && !ellipseContains(inner, point);
        case ShapeKind::Drawing:
            break;
    }
    GLIMMER_ASSERT(drawing != nullptr, "pPicture != NULL", "uShapes");
    return !rect.empty() && hitsInk(*drawing, rect, point, reach.line);
}

bool TShapeObject::mouseDown(TBBShape& owner, Point point, const HitReach& reach) {
    if (!TDrawObject::mouseDown(owner, point, reach)) return false;
    startRect_ = rectangle;
    return true;
}

void TShapeObject::mouseMove(TBBShape& owner, Point point) {
    if (activeHandle_ == noHandle) {
        const Point way = step(point);
        owner.moveBy(way.x, way.y);
        return;
    }
    rectangle = resized(point);
    owner.layOut();
}

void TShapeObject::release(TBBShape& owner) {
    TDrawObject::release(owner);
    rectangle = rectangle.normalized();
    owner.layOut();
}

bool TShapeObject::operator==(const TShapeObject& other) const {
    if (settings != other.settings || rectangle != other.rectangle) return false;
    if (drawing == other.drawing) return true;
    return drawing != nullptr && other.drawing != nullptr && samePixels(*drawing, *other.drawing);
}

}  // namespace glimmer
