#include "imaging/block_at.h"

#include <cstring>

namespace glimmer {

namespace {

/// Whether all pixels of the line or column have one colour; one outside the picture counts as framed.
bool uniform(const TBitmap& picture, const Rect& line) {
    const Rect part = line.intersected(picture.bounds());
    if (part.empty()) return true;
    const uint8_t* first = picture.row(part.top) + static_cast<size_t>(part.left) * 4;
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const uint8_t* p = picture.row(y) + static_cast<size_t>(part.left) * 4;
        for (int32_t x = part.left; x < part.right; ++x, p += 4)
            if (std::memcmp(p, first, 3) != 0) return false;
    }
    return true;
}

}  // namespace

Rect blockAt(const TBitmap& picture, Point at) {
    constexpr int32_t start = 12;
    const Rect all = picture.bounds();
    Rect block = Rect{at.x, at.y, at.x + 1, at.y + 1}.inflated(start).intersected(all);
    for (bool grew = true; grew;) {
        grew = false;
        const auto extend = [&](int32_t& side, int32_t by, int32_t limit, const auto& next) {
            while (side != limit && !uniform(picture, next())) {
                side += by;
                grew = true;
            }
        };
        extend(block.left, -1, 0, [&] { return Rect{block.left - 1, block.top, block.left, block.bottom}; });
        extend(block.right, 1, all.right, [&] { return Rect{block.right, block.top, block.right + 1, block.bottom}; });
        extend(block.top, -1, 0, [&] { return Rect{block.left, block.top - 1, block.right, block.top}; });
        extend(block.bottom, 1, all.bottom, [&] {
            return Rect{block.left, block.bottom, block.right, block.bottom + 1};
        });
    }
    return block;
}

}  // namespace glimmer
