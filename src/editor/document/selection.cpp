#include "editor/document/selection.h"

#include <utility>

namespace glimmer {

Region Selection::pixels(Size picture) const {
    const Region whole = Region::rectangle({0, 0, picture.width, picture.height});
    switch (kind) {
        case Kind::None:
            return {};
        case Kind::Rectangle:
            return Region::rectangle(rect.intersected({0, 0, picture.width, picture.height}));
        case Kind::Ellipse:
            return Region::ellipse(rect).intersected(whole);
        case Kind::Polygon:
            return Region::polygon(corners).intersected(whole);
        case Kind::Region:
            return region.intersected(whole);
    }
    return {};
}

Selection Selection::rectangle(const Rect& rect) {
    const Rect area = rect.normalized();
    if (area.empty()) return {};
    return {Kind::Rectangle, area, {}, {}};
}

Selection Selection::ellipse(const Rect& rect) {
    const Rect area = rect.normalized();
    if (area.empty()) return {};
    return {Kind::Ellipse, area, {}, {}};
}

Selection Selection::polygon(std::vector<Point> corners) {
    if (corners.size() < 3) return {};
    return {Kind::Polygon, {}, std::move(corners), {}};
}

Selection Selection::freeForm(Region region) {
    if (region.empty()) return {};
    return {Kind::Region, {}, {}, std::move(region)};
}

}  // namespace glimmer
