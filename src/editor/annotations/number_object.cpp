#include "editor/annotations/uShapes.h"

namespace glimmer {

Rect TNumberObject::badge(const TBBShape& owner) const { return badgeRect(owner.shape.rectangle, settings.position); }

void TNumberObject::boundingRect(const TBBShape& owner, Rect& rect) const { rect = badge(owner); }

bool TNumberObject::hit(const TBBShape& owner, Point point, const HitReach& /*reach*/) const {
    return ellipseContains(badge(owner), point);
}

void TNumberObject::mouseMove(TBBShape& owner, Point point) {
    const Point way = step(point);
    owner.moveBy(way.x, way.y);
}

}  // namespace glimmer
