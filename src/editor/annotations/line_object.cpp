#include "editor/annotations/uShapes.h"

namespace glimmer {

void TLineObject::boundingRect(const TBBShape& owner, Rect& rect) const {
    rect = {};
    const std::optional<LineRoute> route = owner.route();
    if (!route) return;
    // An arrow head reaches as far as its length and a bullet by its radius around the end; one more for the
    // outline and one for antialiasing.
    const int32_t ends = std::max(arrowLength(settings.width), bulletRadius(settings.width));
    const int32_t around = std::max(ends, settings.width) + 2;
    rect = Rect{route->front.x, route->front.y, route->back.x, route->back.y}.normalized().inflated(around);
}

bool TLineObject::hit(const TBBShape& owner, Point point, const HitReach& reach) const {
    const std::optional<LineRoute> route = owner.route();
    if (!route) return false;
    const double near = settings.width / 2.0 + reach.line;
    return squaredDistance(point, route->front, route->back) <= near * near;
}

void TLineObject::mouseMove(TBBShape& owner, Point point) {
    const Point way = step(point);
    owner.moveBy(way.x, way.y);
}

}  // namespace glimmer
