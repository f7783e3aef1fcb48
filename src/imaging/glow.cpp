// The distance of every pixel to the region is found exactly, in two steps: first along the columns, then along the
// rows, where the squares of the two parts add up. Only distances below the margin matter, so the second step looks at
// 39 neighbours and is one minimum each, eight pixels at a time.

#include "imaging/glow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace glimmer {

namespace {

/// How much of the glow shows at a distance whose square is the index, of 255: all of it beside the region (distance
/// 1), falling with the square of what is left of the way to the margin.
std::array<uint8_t, glowMargin * glowMargin + 1> makeStrengths() {
    std::array<uint8_t, glowMargin * glowMargin + 1> table{};
    // Linear distances in steps of a 64th of a pixel, so that no square root is needed here or there.
    int32_t distance = 64;
    for (int32_t square = 1; square < glowMargin * glowMargin; ++square) {
        while ((distance + 1) * (distance + 1) <= square * 64 * 64) ++distance;
        const double left = (glowMargin - distance / 64.0) / (glowMargin - 1);
        table[static_cast<size_t>(square)] = static_cast<uint8_t>(std::lround(255 * left * left));
    }
    return table;
}

/// For each pixel of a plane around the region the distance to the nearest pixel of the region in the same column,
/// at most glowMargin.
class ColumnDistances {
public:
    ColumnDistances(const Region& region, const Rect& plane)
        : width_(static_cast<size_t>(plane.width())),
          bytes_(width_ * static_cast<size_t>(plane.height()), uint8_t{glowMargin}) {
        for (const Rect& rect : region.rects())
            for (int32_t y = rect.top; y < rect.bottom; ++y) {
                const auto start = bytes_.begin() +
                                   static_cast<std::ptrdiff_t>(static_cast<size_t>(y - plane.top) * width_) +
                                   (rect.left - plane.left);
                std::fill(start, start + rect.width(), uint8_t{0});
            }
        for (int32_t y = 1; y < plane.height(); ++y) spread(row(y - 1), row(y));
        for (int32_t y = plane.height() - 1; y > 0; --y) spread(row(y), row(y - 1));
    }
    uint8_t* row(int32_t y) { return bytes_.data() + static_cast<size_t>(y) * width_; }

private:
    void spread(const uint8_t* from, uint8_t* to) const {
        for (size_t x = 0; x < width_; ++x) {
            const auto next = static_cast<uint8_t>(from[x] + 1);
            to[x] = std::min(to[x], next);
        }
    }
    size_t width_;
    std::vector<uint8_t> bytes_;
};

/// Lays `value` over `below` with `strength` of 255.
uint8_t over(uint8_t value, uint8_t below, uint32_t strength) {
    return static_cast<uint8_t>((value * strength + below * (255U - strength) + 127U) / 255U);
}

void lay(uint8_t* pixel, Colour colour, uint32_t strength) {
    pixel[0] = over(blueOf(colour), pixel[0], strength);
    pixel[1] = over(greenOf(colour), pixel[1], strength);
    pixel[2] = over(redOf(colour), pixel[2], strength);
}

/// The same onto a pixel with transparency: what was clear takes on more of the colour.
void layTransparent(uint8_t* pixel, Colour colour, uint32_t strength) {
    const uint32_t alpha = (strength * 255U + pixel[3] * (255U - strength) + 127U) / 255U;
    if (alpha == 0) return;
    lay(pixel, colour, std::min(255U, (strength * 255U + alpha / 2U) / alpha));
    pixel[3] = static_cast<uint8_t>(alpha);
}

}  // namespace

Result<TBitmap> glow(const TBitmap& picture, const Region& region, Colour colour) {
    static const auto strengths = makeStrengths();
    if (region.empty()) return Failure{"There is nothing selected for the glow."};
    const Rect plane = region.bounds().inflated(glowMargin);
    Result<TBitmap> result = TBitmap::create(plane.width(), plane.height(), picture.format());
    if (!result) return result;
    copyPixels(*result, {0, 0}, picture, plane);

    ColumnDistances columns(region, plane);
    const auto width = static_cast<size_t>(plane.width());
    std::vector<uint16_t> squares(width + size_t{2} * glowMargin, uint16_t{glowMargin * glowMargin});
    std::vector<uint16_t> nearest(width);
    const size_t step = picture.bytesPerPixel();
    for (int32_t y = 0; y < plane.height(); ++y) {
        const uint8_t* distances = columns.row(y);
        for (size_t x = 0; x < width; ++x) squares[x + glowMargin] = static_cast<uint16_t>(distances[x] * distances[x]);
        std::fill(nearest.begin(), nearest.end(), uint16_t{glowMargin * glowMargin});
        for (int32_t aside = 1 - glowMargin; aside < glowMargin; ++aside) {
            const uint16_t* from = squares.data() + glowMargin + aside;
            for (size_t x = 0; x < width; ++x) {
                const auto square = static_cast<int16_t>(from[x] + aside * aside);
                nearest[x] = static_cast<uint16_t>(std::min(static_cast<int16_t>(nearest[x]), square));
            }
        }
        uint8_t* pixel = result->row(y);
        for (size_t x = 0; x < width; ++x, pixel += step) {
            const uint32_t strength = strengths[nearest[x]];
            if (strength == 0) continue;
            if (step == 3 || pixel[3] == 255)
                lay(pixel, colour, strength);
            else
                layTransparent(pixel, colour, strength);
        }
    }
    return result;
}

}  // namespace glimmer
