#pragma once

#include <utility>
#include <vector>

#include "common/geometry.h"

namespace glimmer {

/// A polygon that is being selected, corner by corner, and where the pointer is.
class PolygonDraft {
public:
    [[nodiscard]] bool underWay() const { return !corners_.empty(); }
    [[nodiscard]] const std::vector<Point>& corners() const { return corners_; }
    [[nodiscard]] Point pointer() const { return pointer_; }

    /// The same corner twice is one.
    void add(Point corner) {
        if (corners_.empty() || corners_.back() != corner) corners_.push_back(corner);
        pointer_ = corner;
    }
    void pointTo(Point at) { pointer_ = at; }
    [[nodiscard]] std::vector<Point> take() { return std::exchange(corners_, {}); }
    void clear() { corners_.clear(); }

private:
    std::vector<Point> corners_;
    Point pointer_;
};

}  // namespace glimmer
