#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// A set of pixels, kept as rectangles: what a free-form selection is. A value; every operation makes a new one.
///
/// The rectangles are in the one form that is possible for the set: sorted by top, then left, none overlapping;
/// rectangles beside each other have equal top and bottom and do not touch, and bands above each other that could be
/// one are one. Two regions are therefore equal when their rectangles are.
class Region {
public:
    /// No pixel.
    Region() = default;
    /// The pixels of `area` (right and bottom outside); none when it is empty.
    static Region rectangle(const Rect& area);
    /// The pixels whose centres lie inside or on the ellipse that touches the four sides of `area`.
    static Region ellipse(const Rect& area);
    /// The pixels whose centres the closed line through `corners` goes round at least once (so where a loop crosses
    /// itself nothing is cut out). A corner (x, y) is the upper left corner of that pixel. None for fewer than three.
    static Region polygon(std::span<const Point> corners);

    [[nodiscard]] bool empty() const { return rects_.empty(); }
    /// The smallest rectangle around all pixels; an empty one without pixels.
    [[nodiscard]] Rect bounds() const;
    [[nodiscard]] bool contains(Point p) const;
    /// Whether it is one plain rectangle.
    [[nodiscard]] bool isRectangle() const { return rects_.size() == 1; }
    /// The rectangles in their order: what to go through to draw, copy or clip.
    [[nodiscard]] const std::vector<Rect>& rects() const { return rects_; }
    [[nodiscard]] uint64_t pixelCount() const;

    [[nodiscard]] Region united(const Region& other) const;
    [[nodiscard]] Region intersected(const Region& other) const;
    [[nodiscard]] Region subtracted(const Region& other) const;
    /// The pixels that are in exactly one of the two.
    [[nodiscard]] Region exclusiveOr(const Region& other) const;
    /// The pixels of `area` that are not in this region.
    [[nodiscard]] Region invertedWithin(const Rect& area) const;
    [[nodiscard]] Region moved(int32_t dx, int32_t dy) const;

    bool operator==(const Region&) const = default;

private:
    class Builder;
    /// `rule` has bit (inThis + 2 * inOther) set when such a pixel belongs to the result.
    [[nodiscard]] Region combined(const Region& other, uint32_t rule) const;

    std::vector<Rect> rects_;
};

}  // namespace glimmer
