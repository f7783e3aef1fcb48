#include "main_window/thumb_creator.h"

#include <algorithm>
#include <new>

#include "editor/document/document.h"
#include "imaging/scaling.h"

namespace glimmer {

namespace {

/// A page is cut when it is more than this many times taller than the frame's proportions allow.
constexpr int32_t tallest = 2;
/// Pixels of a capture that are reduced in one piece; bounds time, and the memory of the strip that is annotated.
constexpr int64_t stripPixels = int64_t{768} * 1024;
/// A capture without annotations is reduced at once, and a little more sharply, when it has no more pixels than this.
constexpr int64_t plainPixels = 4 * stripPixels;
constexpr Colour borderColour = rgb(176, 186, 196);
constexpr Colour unsavedColour = rgb(235, 110, 20);

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
    ThumbInWork work(*this, document, text, options, unsaved);
    while (!work.done())
        if (const Status advanced = work.advance(); !advanced) return advanced.failure();
    return work.take();
}

ThumbInWork::ThumbInWork(const TThumbCreator& creator, const CaptureDocument& document, TextPainter& text,
                         const PaintOptions& options, bool unsaved)
    : creator_(creator),
      document_(document),
      text_(text),
      options_(options),
      unsaved_(unsaved),
      part_(creator.shownPart(document.size())),
      inner_(fittedSize({part_.width(), part_.height()}, {creator.frame().width - 2, creator.frame().height - 2})),
      factor_(std::max(1, part_.width() / std::max(1, inner_.width))) {
    const int64_t pixelsInRow = int64_t{part_.width()} * factor_;
    stripRows_ = static_cast<int32_t>(std::max<int64_t>(1, stripPixels / std::max<int64_t>(1, pixelsInRow)));
}

bool ThumbInWork::annotated(const Rect& area) const {
    return std::any_of(document_.annotations().begin(), document_.annotations().end(),
                       [&area](const TBBShape& shape) { return !shape.bounds().intersected(area).empty(); });
}

Status ThumbInWork::advance() {
    try {
        return advanceOrThrow();
    } catch (const std::bad_alloc&) {  // a resting capture finds no room to wake
        return Failure{"There is not enough memory for a thumbnail."};
    }
}

Status ThumbInWork::advanceOrThrow() {
    if (!strip_.empty()) return paintNextAnnotation() ? Status() : endStrip();
    if (middle_.empty()) {
        if (int64_t{part_.width()} * part_.height() <= plainPixels && !annotated(part_))
            return finish(document_.background(), part_);
        const auto reducedSide = [this](int32_t side) { return (side + factor_ - 1) / factor_; };
        Result<TBitmap> middle =
            TBitmap::create(reducedSide(part_.width()), reducedSide(part_.height()), PixelFormat::Bgra32);
        if (!middle) return middle.failure();
        middle_ = middle.take();
    }
    if (row_ < middle_.height()) return startStrip();
    return finish(middle_, middle_.bounds());
}

/// A strip without annotations is done at once.
Status ThumbInWork::startStrip() {
    const Rect rows{part_.left, part_.top + row_ * factor_, part_.right, part_.top + (row_ + stripRows_) * factor_};
    stripArea_ = rows.intersected(part_);
    nextAnnotation_ = 0;
    if (!annotated(stripArea_)) return endStrip();
    Result<TBitmap> strip = document_.background().cropped(stripArea_);
    if (!strip) return strip.failure();
    strip_ = strip.take();
    options_.origin = {stripArea_.left, stripArea_.top};
    return {};
}

/// False when the strip has them all.
bool ThumbInWork::paintNextAnnotation() {
    while (nextAnnotation_ < document_.annotations().size()) {
        const TBBShape& shape = document_.annotations()[nextAnnotation_++];
        if (shape.bounds().intersected(stripArea_).empty()) continue;
        paintAnnotation(strip_, strip_.bounds(), shape, text_, options_);
        return true;
    }
    return false;
}

Status ThumbInWork::endStrip() {
    const int32_t height = (stripArea_.height() + factor_ - 1) / factor_;
    const Result<TBitmap> small = strip_.empty() ? resized(document_.background(), stripArea_, middle_.width(), height)
                                                 : resized(strip_, middle_.width(), height);
    if (!small) return small.failure();
    copyPixels(middle_, {0, row_}, *small);
    strip_ = {};
    row_ += height;
    return {};
}

/// Reduces the rest of the way and frames the picture.
Status ThumbInWork::finish(const TBitmap& source, const Rect& part) {
    const Result<TBitmap> reduced = resized(source, part, inner_.width, inner_.height);
    if (!reduced) return reduced.failure();
    const Size frame = creator_.frame();
    Result<TBitmap> result = TBitmap::create(frame.width, frame.height, PixelFormat::Bgra32);
    if (!result) return result.failure();
    result->fill(result->bounds(), creator_.background());
    const Point at{(frame.width - inner_.width) / 2, (frame.height - inner_.height) / 2};
    result->fill(Rect{at.x - 1, at.y - 1, at.x + inner_.width + 1, at.y + inner_.height + 1}, borderColour);
    result->fill(Rect{at.x, at.y, at.x + inner_.width, at.y + inner_.height}, rgb(255, 255, 255));
    blendOver(*result, at, *reduced);
    const int32_t radius = std::max(3, frame.height / 22);
    if (unsaved_) drawDot(*result, {at.x + inner_.width - radius - 1, at.y + radius + 1}, radius);
    result_ = result.take();
    return {};
}

}  // namespace glimmer
