#include "editor/painting/annotation_painter.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "common/assertion.h"
#include "editor/painting/cairo_canvas.h"
#include "editor/painting/part_painters.h"

namespace glimmer {

namespace {

/// Everything is painted in tiles of this side that lie on a fixed grid of the image, each of them whole: cairo's
/// soft edges differ in the last bits with the place of the surface's border, and a small repaint must give the
/// pixels that a large one gave.
constexpr int32_t tileSide = 256;

bool isOpaque(const TBitmap& bitmap, const Rect& area) {
    for (int32_t y = area.top; y < area.bottom; ++y) {
        const uint8_t* pixel = bitmap.row(y) + static_cast<size_t>(area.left) * 4;
        for (int32_t x = area.left; x < area.right; ++x, pixel += 4)
            if (pixel[3] != 255) return false;
    }
    return true;
}

/// Lays the `area` of a premultiplied layer, whose top left pixel is the picture's pixel `at`, over a picture with
/// straight alpha.
void compose(TBitmap& target, const Rect& area, const TBitmap& layer, Point at) {
    for (int32_t y = area.top; y < area.bottom; ++y) {
        uint8_t* pixel = target.row(y) + static_cast<size_t>(area.left) * 4;
        const uint8_t* above = layer.row(y - at.y) + static_cast<size_t>(area.left - at.x) * 4;
        for (int32_t x = area.left; x < area.right; ++x, pixel += 4, above += 4) {
            if (above[3] == 0) continue;
            const uint32_t below = multiplied(pixel[3], 255U - above[3]);
            const uint32_t alpha = above[3] + below;
            for (size_t k = 0; k < 3; ++k) {
                const uint32_t sum = above[k] * 255U + pixel[k] * below;
                pixel[k] = static_cast<uint8_t>(std::min(255U, (sum + alpha / 2) / alpha));
            }
            pixel[3] = static_cast<uint8_t>(alpha);
        }
    }
}

void paintOn(CairoCanvas& canvas, const TBBShape& shape, TextPainter& text, const PaintOptions& options) {
    if (shape.shape.isVisible()) paintShape(canvas, shape, options.shadows);
    if (shape.text.isVisible()) {
        const bool edited = options.editedId != 0 && shape.id() == options.editedId;
        paintLabel(canvas, shape, text, !edited, options.shadows);
    }
    // After the label: a bullet at its edge shows whole.
    if (shape.line.isVisible()) paintLine(canvas, shape, options.shadows);
    if (shape.number.isVisible()) paintBadge(canvas, shape, text, options.shadows);
}

/// The start of the tile that holds a coordinate.
int32_t tileStart(int32_t at) { return (at >= 0 ? at : at - tileSide + 1) / tileSide * tileSide; }

/// One tile. `part` is what of it may be touched, in the target's pixels; `tile` is its place there.
template <class Draw>
void paintTile(TBitmap& target, const Rect& part, const Rect& tile, Point origin, TBitmap& scratch, Draw& draw) {
    const Rect place = tile.moved(origin.x, origin.y);
    const bool opaque = isOpaque(target, part);
    if (opaque && part == tile) {
        CairoCanvas canvas(target.row(tile.top) + static_cast<size_t>(tile.left) * 4, target.stride(), place);
        draw(canvas);
        return;
    }
    if (scratch.empty()) {
        Result<TBitmap> made = TBitmap::create(tileSide, tileSide, PixelFormat::Bgra32);
        if (!made) throw std::bad_alloc();
        scratch = made.take();
    }
    std::memset(scratch.bytes().data(), 0, scratch.byteCount());
    if (opaque) copyPixels(scratch, {part.left - tile.left, part.top - tile.top}, target, part);
    CairoCanvas canvas(scratch.row(0), scratch.stride(), place);
    draw(canvas);
    if (opaque)
        copyPixels(target, {part.left, part.top}, scratch, part.moved(-tile.left, -tile.top));
    else
        compose(target, part, scratch, {tile.left, tile.top});
}

/// Calls draw(canvas) for the tiles that meet the clip, each with a canvas in image coordinates.
template <class Draw>
void forTiles(TBitmap& target, const Rect& clip, Point origin, Draw&& draw) {
    GLIMMER_ASSERT(target.empty() || target.format() == PixelFormat::Bgra32, "pBitmap->PixelFormat == pf32bit",
                   "uShapes");
    const Rect all = clip.intersected(target.bounds());
    if (all.empty()) return;
    TBitmap scratch;
    for (int32_t top = tileStart(all.top + origin.y) - origin.y; top < all.bottom; top += tileSide) {
        for (int32_t left = tileStart(all.left + origin.x) - origin.x; left < all.right; left += tileSide) {
            const Rect tile = {left, top, left + tileSide, top + tileSide};
            paintTile(target, tile.intersected(all), tile, origin, scratch, draw);
        }
    }
}

}  // namespace

void paintAnnotations(TBitmap& target, const Rect& clip, const TShapesList& shapes, TextPainter& text,
                      const PaintOptions& options) {
    const Rect wanted = clip.intersected(target.bounds()).moved(options.origin.x, options.origin.y);
    std::vector<std::pair<const TBBShape*, Rect>> touched;
    for (const TBBShape& shape : shapes) {
        const Rect bounds = shape.bounds();
        if (!bounds.intersected(wanted).empty()) touched.emplace_back(&shape, bounds);
    }
    if (touched.empty()) return;
    forTiles(target, clip, options.origin, [&](CairoCanvas& canvas) {
        for (const auto& [shape, bounds] : touched)
            if (!bounds.intersected(canvas.area()).empty()) paintOn(canvas, *shape, text, options);
    });
}

void paintAnnotation(TBitmap& target, const Rect& clip, const TBBShape& shape, TextPainter& text,
                     const PaintOptions& options) {
    const Rect bounds = shape.bounds().moved(-options.origin.x, -options.origin.y);
    forTiles(target, clip.intersected(bounds), options.origin,
             [&](CairoCanvas& canvas) { paintOn(canvas, shape, text, options); });
}

void paintHandles(TBitmap& target, const Rect& clip, std::span<const Point> points, int32_t size) {
    const auto fill = [&](const Rect& rect, Colour colour) { target.fill(rect.intersected(clip), colour); };
    for (const Point& point : points) {
        const Point at = {point.x - size / 2, point.y - size / 2};
        const Rect square = {at.x, at.y, at.x + size, at.y + size};
        fill(square, guideColour);
        fill(square.inflated(-std::max(1, size / 7)), rgb(255, 255, 255));
    }
}

void paintGuides(TBitmap& target, const Rect& clip, std::span<const GuideLine> guides) {
    for (const GuideLine& guide : guides) {
        const Rect line = guide.vertical ? Rect{guide.at, 0, guide.at + 1, target.height()}
                                         : Rect{0, guide.at, target.width(), guide.at + 1};
        target.fill(line.intersected(clip), guideColour);
    }
}

}  // namespace glimmer
