#include "editor/commands/crop_picture.h"

#include <utility>

#include "editor/document/content.h"

namespace glimmer {

namespace {

/// Whether nothing of the annotation lies in the area. One of which nothing is shown is where its shape would be.
bool liesOutside(const TBBShape& shape, const Rect& area) {
    const Rect bounds = shape.anyVisible() ? shape.bounds() : shape.shape.rectangle.normalized();
    return bounds.intersected(area).empty();
}

}  // namespace

Status CropPicture::apply(CaptureContent& content) {
    const TBitmap& picture = content.picture();
    const Size size = picture.size();
    const Rect outside[] = {{0, 0, size.width, area_.top},
                            {0, area_.bottom, size.width, size.height},
                            {0, area_.top, area_.left, area_.bottom},
                            {area_.right, area_.top, size.width, area_.bottom}};
    std::vector<Strip> strips;
    for (const Rect& part : outside) {
        if (part.empty()) continue;
        Result<TBitmap> pixels = picture.cropped(part);
        if (!pixels) return pixels.failure();
        strips.push_back({{part.left, part.top}, PackedPixels(pixels.take())});
    }
    Result<TBitmap> inside = picture.cropped(area_);
    if (!inside) return inside.failure();
    former_ = size;
    annotations_ = content.annotations();
    strips_ = std::move(strips);
    content.setPicture(inside.take(), {-area_.left, -area_.top});
    for (const TBBShape& shape : annotations_)
        if (liesOutside(shape, area_)) content.removeAnnotation(shape.id());
    return {};
}

Status CropPicture::revert(CaptureContent& content) {
    Result<TBitmap> whole = TBitmap::create(former_.width, former_.height, content.picture().format());
    if (!whole) return whole.failure();
    copyPixels(*whole, {area_.left, area_.top}, content.picture());
    for (Strip& strip : strips_) {
        Result<TBitmap> pixels = strip.pixels.take();
        if (!pixels) return pixels.failure();
        copyPixels(*whole, strip.at, *pixels);
        // Kept until the end, so that a strip for which memory is short leaves the step whole.
        strip.pixels = PackedPixels(pixels.take());
    }
    strips_.clear();
    content.setPicture(whole.take(), {});
    content.setAnnotations(annotations_);
    return {};
}

bool CropPicture::compactSome() {
    for (Strip& strip : strips_)
        if (strip.pixels.packSome()) return true;
    return false;
}

size_t CropPicture::byteCount() const {
    size_t sum = 0;
    for (const Strip& strip : strips_) sum += strip.pixels.byteCount();
    return sum;
}

}  // namespace glimmer
