#include "output/thumb_creator.h"

#include <algorithm>

#include "editor/document.h"
#include "imaging/scaling.h"

namespace glimmer {

namespace {

/// A page is cut when it is more than this many times taller than the frame's proportions allow.
constexpr int32_t tallest = 2;
/// Rows of the intermediate picture that are painted at a time; bounds the memory of the full-size strip.
constexpr int32_t stripRows = 64;
constexpr Colour borderColour = rgb(176, 186, 196);
constexpr Colour unsavedColour = rgb(235, 110, 20);

bool annotated(const CaptureDocument& document, const Rect& area) {
    return std::any_of(document.annotations().begin(), document.annotations().end(),
                       [&area](const TBBShape& shape) { return !shape.bounds().intersected(area).empty(); });
}

/// The part with its annotations, reduced by the whole number `factor` in strips, so that a large capture never
/// needs a second full-size picture.
Result<TBitmap> reducedWithAnnotations(const CaptureDocument& document, const Rect& part, int32_t factor,
                                       TextPainter& text, PaintOptions options) {
    const auto reducedSide = [factor](int32_t side) { return std::max(1, (side + factor - 1) / factor); };
    Result<TBitmap> result =
        TBitmap::create(reducedSide(part.width()), reducedSide(part.height()), PixelFormat::Bgra32);
    for (int32_t row = 0; result && row < result->height(); row += stripRows) {
        const Rect area =
            Rect{part.left, part.top + row * factor, part.right, part.top + (row + stripRows) * factor}.intersected(
                part);
        const Size size{result->width(), reducedSide(area.height())};
        const Result<TBitmap> small = [&]() -> Result<TBitmap> {
            if (!annotated(document, area)) return resized(document.background(), area, size.width, size.height);
            Result<TBitmap> strip = document.background().cropped(area);
            if (!strip) return strip;
            options.origin = {area.left, area.top};
            paintAnnotations(*strip, strip->bounds(), document.annotations(), text, options);
            return resized(*strip, size.width, size.height);
        }();
        if (!small) return small.failure();
        copyPixels(*result, {0, row}, *small);
    }
    return result;
}

void blendOver(TBitmap& target, Point at, const TBitmap& picture) {
    for (int32_t y = 0; y < picture.height(); ++y) {
        const uint8_t* from = picture.row(y);
        uint8_t* to = target.row(at.y + y) + static_cast<size_t>(at.x) * 4;
        for (int32_t x = 0; x < picture.width(); ++x, from += 4, to += 4) {
            const uint32_t alpha = from[3];
            for (int channel = 0; channel < 3; ++channel)
                to[channel] = static_cast<uint8_t>((from[channel] * alpha + to[channel] * (255 - alpha) + 127) / 255);
        }
    }
}

void drawDot(TBitmap& target, Point centre, int32_t radius) {
    for (int32_t y = -radius; y <= radius; ++y)
        for (int32_t x = -radius; x <= radius; ++x)
            if (x * x + y * y <= radius * radius && target.bounds().contains({centre.x + x, centre.y + y}))
                target.setPixel(centre.x + x, centre.y + y, unsavedColour);
}

}  // namespace

Rect TThumbCreator::shownPart(Size capture) const {
    const int64_t limit = static_cast<int64_t>(capture.width) * frame_.height * tallest / std::max(1, frame_.width);
    return {0, 0, capture.width, static_cast<int32_t>(std::clamp<int64_t>(limit, 1, capture.height))};
}

Result<TBitmap> TThumbCreator::create(const CaptureDocument& document, TextPainter& text, const PaintOptions& options,
                                      bool unsaved) const {
    const Rect part = shownPart(document.size());
    const Size inner = fittedSize({part.width(), part.height()}, {frame_.width - 2, frame_.height - 2});
    Result<TBitmap> reduced = [&]() -> Result<TBitmap> {
        if (!annotated(document, part)) return resized(document.background(), part, inner.width, inner.height);
        const int32_t factor = std::max(1, part.width() / std::max(1, inner.width));
        Result<TBitmap> middle = reducedWithAnnotations(document, part, factor, text, options);
        if (!middle) return middle;
        return resized(*middle, inner.width, inner.height);
    }();
    if (!reduced) return reduced;

    Result<TBitmap> result = TBitmap::create(frame_.width, frame_.height, PixelFormat::Bgra32);
    if (!result) return result;
    result->fill(result->bounds(), background_);
    const Point at{(frame_.width - inner.width) / 2, (frame_.height - inner.height) / 2};
    result->fill(Rect{at.x - 1, at.y - 1, at.x + inner.width + 1, at.y + inner.height + 1}, borderColour);
    result->fill(Rect{at.x, at.y, at.x + inner.width, at.y + inner.height}, rgb(255, 255, 255));
    blendOver(*result, at, *reduced);
    const int32_t radius = std::max(3, frame_.height / 22);
    if (unsaved) drawDot(*result, {at.x + inner.width - radius - 1, at.y + radius + 1}, radius);
    return result;
}

}  // namespace glimmer
