#include <algorithm>
#include <cmath>
#include <vector>

#include "editor/painting/part_painters.h"

namespace glimmer {

namespace {

/// The pixels of one direction of a picture that one target pixel covers, with the parts of the first and last.
struct Covered {
    int32_t first;
    int32_t last;
    double firstPart;
    double lastPart;
    [[nodiscard]] double part(int32_t i) const {
        if (i == first) return firstPart;
        return i == last ? lastPart : 1;
    }
};

/// What pixel `i` of `length` covers of `pixels` picture pixels.
Covered covered(int32_t i, int32_t length, int32_t pixels) {
    const double from = static_cast<double>(i) * pixels / length;
    const double to = static_cast<double>(i + 1) * pixels / length;
    Covered c{};
    c.first = std::min(static_cast<int32_t>(from), pixels - 1);
    c.last = std::clamp(static_cast<int32_t>(std::ceil(to)) - 1, c.first, pixels - 1);
    c.firstPart = std::min(to, c.first + 1.0) - from;
    c.lastPart = c.last == c.first ? c.firstPart : to - c.last;
    return c;
}

/// Colour and alpha of a box of the picture: colours count by their alpha.
void blendBox(CairoCanvas& canvas, Point at, const TBitmap& picture, const Covered& cx, const Covered& cy) {
    double sum[4] = {0, 0, 0, 0};  // blue, green, red times alpha; alpha
    double weights = 0;
    for (int32_t y = cy.first; y <= cy.last; ++y) {
        const uint8_t* row = picture.row(y);
        for (int32_t x = cx.first; x <= cx.last; ++x) {
            const double weight = cx.part(x) * cy.part(y);
            const uint8_t* pixel = row + static_cast<size_t>(x) * 4;
            weights += weight;
            if (pixel[3] == 0) continue;
            const double alpha = weight * pixel[3];
            for (size_t k = 0; k < 3; ++k) sum[k] += alpha * pixel[k];
            sum[3] += alpha;
        }
    }
    if (sum[3] <= 0 || weights <= 0) return;
    const auto mean = [&sum](size_t k) { return static_cast<uint32_t>(std::lround(sum[k] / sum[3])); };
    const auto alpha = static_cast<uint32_t>(std::lround(sum[3] / weights));
    canvas.blend(at.x, at.y, rgb(mean(2), mean(1), mean(0)), std::min(alpha, 255U));
}

}  // namespace

void paintPicture(CairoCanvas& canvas, const TBitmap& picture, const Rect& rect) {
    const Rect part = rect.intersected(canvas.area());
    if (part.empty() || picture.format() != PixelFormat::Bgra32) return;
    if (rect.width() == picture.width() && rect.height() == picture.height()) {
        for (int32_t y = part.top; y < part.bottom; ++y) {
            const uint8_t* pixel = picture.row(y - rect.top) + static_cast<size_t>(part.left - rect.left) * 4;
            for (int32_t x = part.left; x < part.right; ++x, pixel += 4)
                if (pixel[3] != 0) canvas.blend(x, y, rgb(pixel[2], pixel[1], pixel[0]), pixel[3]);
        }
        return;
    }
    std::vector<Covered> columns;
    columns.reserve(static_cast<size_t>(part.width()));
    for (int32_t x = part.left; x < part.right; ++x)
        columns.push_back(covered(x - rect.left, rect.width(), picture.width()));
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const Covered row = covered(y - rect.top, rect.height(), picture.height());
        for (int32_t x = part.left; x < part.right; ++x)
            blendBox(canvas, {x, y}, picture, columns[static_cast<size_t>(x - part.left)], row);
    }
}

}  // namespace glimmer
