#include "editor/canvas/working_picture.h"

#include "editor/annotations/shapes_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace glimmer {

namespace {

/// More separate pieces than this are painted as one.
constexpr size_t maxPieces = 16;

uint8_t blended(uint8_t below, uint8_t above, uint32_t alpha) {
    return static_cast<uint8_t>((below * (255 - alpha) + above * alpha + 127) / 255);
}

/// A row of the background on the chequered ground; opaque pixels, nearly all there are, are copied.
void copyOpaque(const uint8_t* from, uint8_t* to, int32_t left, int32_t right, int32_t y) {
    std::memcpy(to, from, static_cast<size_t>(right - left) * 4);
    uint8_t all = 255;
    for (int32_t x = left; x < right; ++x) all &= from[static_cast<size_t>(x - left) * 4 + 3];
    if (all == 255) return;
    for (int32_t x = left; x < right; ++x, to += 4) {
        const bool dark = ((x / WorkingPicture::chequer + y / WorkingPicture::chequer) & 1) != 0;
        const uint8_t ground = dark ? 204 : 255;
        const uint32_t alpha = to[3];
        for (int c = 0; c < 3; ++c) to[c] = blended(ground, to[c], alpha);
        to[3] = 255;
    }
}

Rect whole(Size size) { return {0, 0, size.width, size.height}; }

}  // namespace

void WorkingPicture::invalidate(const Rect& area) {
    const Rect part = area.intersected(whole(document_.size()));
    if (!part.empty()) dirty_ = dirty_.united(Region::rectangle(part));
}

void WorkingPicture::invalidateAll() {
    if (bitmap_.size() != document_.size()) bitmap_ = TBitmap();
    dirty_ = Region::rectangle(whole(document_.size()));
}

Status WorkingPicture::refresh(const Rect& area, const LiveInk& ink) {
    if (std::exchange(inked_, ink.id) != ink.id) invalidateAll();
    if (bitmap_.size() != document_.size()) {
        bitmap_ = TBitmap();
        Result<TBitmap> fresh = TBitmap::create(document_.size().width, document_.size().height, PixelFormat::Bgra32);
        if (!fresh) return fresh.failure();
        bitmap_ = fresh.take();
        invalidateAll();
    }
    const Region wanted = Region::rectangle(area.intersected(bitmap_.bounds()));
    const Region stale = dirty_.intersected(wanted);
    if (stale.empty()) return {};
    if (stale.rects().size() > maxPieces)
        paint(stale.bounds(), ink);
    else
        for (const Rect& piece : stale.rects()) paint(piece, ink);
    dirty_ = dirty_.subtracted(wanted);
    return {};
}

void WorkingPicture::paint(const Rect& area, const LiveInk& ink) {
    const TBitmap& background = document_.background();
    for (int32_t y = area.top; y < area.bottom; ++y) {
        const size_t offset = static_cast<size_t>(area.left) * 4;
        copyOpaque(background.row(y) + offset, bitmap_.row(y) + offset, area.left, area.right, y);
    }
    if (ink.id == noAnnotation) {
        paintAnnotations(bitmap_, area, document_.annotations(), text_, options);
    } else {
        TShapesList shown = document_.annotations();
        if (TBBShape* shape = shown.find(ink.id)) shape->shape.setVisible(false);
        paintAnnotations(bitmap_, area, shown, text_, options);
    }
    if (ink.bitmap == nullptr) return;
    const Rect part = ink.bitmap->bounds().moved(ink.at.x, ink.at.y).intersected(area);
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const uint8_t* from = ink.bitmap->row(y - ink.at.y) + static_cast<size_t>(part.left - ink.at.x) * 4;
        uint8_t* to = bitmap_.row(y) + static_cast<size_t>(part.left) * 4;
        for (int32_t x = part.left; x < part.right; ++x, from += 4, to += 4)
            if (from[3] != 0)
                for (int c = 0; c < 3; ++c) to[c] = blended(to[c], from[c], from[3]);
    }
}

}  // namespace glimmer
