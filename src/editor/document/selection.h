#pragma once

#include <vector>

#include "common/geometry.h"
#include "common/region.h"

namespace glimmer {

/// The selected area of a capture: a shape with an outline, or, once inverted or put together, a free-form region.
struct Selection {
    enum class Kind : uint8_t { None, Rectangle, Ellipse, Polygon, Region };

    Kind kind = Kind::None;
    Rect rect;                   ///< of a rectangle or ellipse, right and bottom outside; normalised
    std::vector<Point> corners;  ///< of a polygon
    Region region;               ///< of a free-form selection

    [[nodiscard]] bool empty() const { return kind == Kind::None; }
    /// The selected pixels, cut to a picture of that size; empty without a selection.
    [[nodiscard]] Region pixels(Size picture) const;
    /// The smallest rectangle around pixels().
    [[nodiscard]] Rect bounds(Size picture) const { return pixels(picture).bounds(); }

    static Selection rectangle(const Rect& rect);
    static Selection ellipse(const Rect& rect);
    static Selection polygon(std::vector<Point> corners);
    /// None when the region is empty.
    static Selection freeForm(Region region);

    bool operator==(const Selection&) const = default;
};

}  // namespace glimmer
