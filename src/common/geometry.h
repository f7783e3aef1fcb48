#pragma once

#include <algorithm>
#include <cstdint>

namespace glimmer {

/// A position in image pixels.
struct Point {
    int32_t x = 0;
    int32_t y = 0;
    bool operator==(const Point&) const = default;
};

/// An extent in pixels.
struct Size {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle in image pixels: left and top are inside, right and bottom are outside. It may be inverted
/// (right < left) while it is being dragged; see normalized().
struct Rect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    bool operator==(const Rect&) const = default;

    [[nodiscard]] int32_t width() const { return right - left; }
    [[nodiscard]] int32_t height() const { return bottom - top; }
    [[nodiscard]] bool empty() const { return right <= left || bottom <= top; }
    [[nodiscard]] bool contains(Point p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    [[nodiscard]] Rect normalized() const {
        return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
    }
    [[nodiscard]] Rect intersected(const Rect& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    /// The smallest rectangle around both; an empty one does not count.
    [[nodiscard]] Rect united(const Rect& other) const {
        if (empty()) return other;
        if (other.empty()) return *this;
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }
    [[nodiscard]] Rect inflated(int32_t by) const { return {left - by, top - by, right + by, bottom + by}; }
    [[nodiscard]] Rect moved(int32_t dx, int32_t dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
};

/// The middle of two coordinates, halves rounded toward zero.
constexpr int32_t middle(int32_t a, int32_t b) { return static_cast<int32_t>((static_cast<int64_t>(a) + b) / 2); }

}  // namespace glimmer
