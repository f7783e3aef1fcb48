#include "imaging/pixel_operation.h"

#include <algorithm>

#include "common/assertion.h"
#include "imaging/gblur2.h"
#include "imaging/glow.h"
#include "imaging/graphutils.h"

namespace glimmer {

namespace {

/// The pixels of a rectangle whose right and bottom are inside.
Rect widened(const Rect& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.right + 1, rectangle.bottom + 1};
}

/// A selection as a record holds it.
TPixelOperation selected(Size picture, const Region* region, const PixelSelection* pSelection) {
    TPixelOperation operation;
    const Rect all{0, 0, picture.width, picture.height};
    if (region != nullptr) {
        operation.region = region->intersected(Region::rectangle(all));
        return operation;
    }
    GLIMMER_ASSERT(pSelection != nullptr, "pSelection != NULL", "uEditor");
    const Rect rectangle = pSelection->rectangle.normalized();
    // The sides are cut before anything is added to them: they may be any numbers.
    const Rect cut = rectangle.intersected({0, 0, picture.width - 1, picture.height - 1});
    if (pSelection->outline == PixelSelection::Outline::rectangle) {
        operation.rectangle = cut;
    } else {
        const Rect bounded =
            rectangle.intersected({-TBitmap::maxSide, -TBitmap::maxSide, 2 * TBitmap::maxSide, 2 * TBitmap::maxSide});
        operation.region = Region::ellipse(widened(bounded)).intersected(Region::rectangle(all));
    }
    return operation;
}

Result<TPixelOperation> selectedOrReason(const TBitmap& image, const Region* region, const PixelSelection* pSelection) {
    TPixelOperation operation = selected(image.size(), region, pSelection);
    if (operation.box().empty()) return Failure{"The selection lies outside the picture."};
    return operation;
}

/// One byte of each 32-bit pixel in all three channels of a 24-bit picture.
void spreadAlpha(const TBitmap& from, TBitmap& to) {
    for (int32_t y = 0; y < from.height(); ++y) {
        const uint8_t* p = from.row(y);
        uint8_t* q = to.row(y);
        for (int32_t x = 0; x < from.width(); ++x, p += 4, q += 3) std::fill(q, q + 3, p[3]);
    }
}

/// What the blur makes of an area of nothing but 255: its truncations can cost a level or two.
Result<int32_t> blurredFull(double radius) {
    Result<TBitmap> one = TBitmap::create(1, 1, PixelFormat::Bgr24);
    if (!one) return one.failure();
    one->setPixel(0, 0, rgb(255, 255, 255));
    GBlur(*one, radius);
    return int32_t{one->row(0)[0]};
}

/// Blurs colours weighted by their alpha, and the alpha: a 24-bit blur each. What was opaque all around stays opaque.
Status blurTransparent(TBitmap& picture, double radius) {
    const Result<int32_t> full = blurredFull(radius);
    if (!full) return full.failure();
    Result<TBitmap> colours = TBitmap::create(picture.width(), picture.height(), PixelFormat::Bgr24);
    if (!colours) return colours.failure();
    Result<TBitmap> alphas = TBitmap::create(picture.width(), picture.height(), PixelFormat::Bgr24);
    if (!alphas) return alphas.failure();
    spreadAlpha(picture, *alphas);
    for (int32_t y = 0; y < picture.height(); ++y) {
        const uint8_t* p = picture.row(y);
        uint8_t* q = colours->row(y);
        for (int32_t x = 0; x < picture.width(); ++x, p += 4, q += 3)
            for (size_t c = 0; c < 3; ++c) q[c] = static_cast<uint8_t>((p[c] * p[3] + 127) / 255);
    }
    GBlur(*colours, radius);
    GBlur(*alphas, radius);
    for (int32_t y = 0; y < picture.height(); ++y) {
        const uint8_t* colour = colours->row(y);
        const uint8_t* alpha = alphas->row(y);
        uint8_t* to = picture.row(y);
        for (int32_t x = 0; x < picture.width(); ++x, colour += 3, alpha += 3, to += 4) {
            for (size_t c = 0; c < 3; ++c)
                to[c] = *alpha == 0 ? uint8_t{0}
                                    : static_cast<uint8_t>(std::min(255, (colour[c] * 255 + *alpha / 2) / *alpha));
            to[3] = static_cast<uint8_t>(std::min(255, (*alpha * 255 + *full / 2) / *full));
        }
    }
    return {};
}

Status blur(TBitmap& work, double radius) {
    if (work.hasTransparency()) return blurTransparent(work, radius);
    const PixelFormat format = work.format();
    if (format == PixelFormat::Bgr24) {
        GBlur(work, radius);
        return {};
    }
    Result<TBitmap> narrow = work.converted(PixelFormat::Bgr24);
    if (!narrow) return narrow.failure();
    GBlur(*narrow, radius);
    convertPixels(work, *narrow);
    return {};
}

/// Runs an effect that wants 32 bits a pixel and does as it likes with the fourth byte.
Status recolour(TBitmap& work, void (*effect)(TBitmap&)) {
    Result<TBitmap> wide = work.converted(PixelFormat::Bgra32);
    if (!wide) return wide.failure();
    effect(*wide);
    if (work.format() == PixelFormat::Bgr24) {
        convertPixels(work, *wide);
        return {};
    }
    takeColours(work, *wide);
    return {};
}

}  // namespace

Rect TPixelOperation::box() const { return region ? region->bounds() : widened(rectangle); }

Rect TPixelOperation::reach() const { return kind == PixelOperationKind::glow ? box().inflated(glowMargin) : box(); }

Rect selectionBox(Size picture, const Region* region, const PixelSelection* pSelection) {
    return selected(picture, region, pSelection).box();
}

Result<TPixelOperation> applyEffect(int32_t effect, const TBitmap& image, const Region* region,
                                    const PixelSelection* pSelection, int32_t blurIntensity) {
    Result<TPixelOperation> operation = selectedOrReason(image, region, pSelection);
    if (!operation) return operation;
    Result<TBitmap> work = image.cropped(operation->box());
    if (!work) return work.failure();
    Status done;
    switch (effect) {
        case static_cast<int32_t>(PixelOperationKind::blur):
            done = blur(*work, blurIntensity * 0.1);
            break;
        case static_cast<int32_t>(PixelOperationKind::grayscale):
            done = recolour(*work, grayscale);
            break;
        case static_cast<int32_t>(PixelOperationKind::invert):
            done = recolour(*work, invert);
            break;
        case static_cast<int32_t>(PixelOperationKind::interlace):
            interlace(*work);
            break;
        default:
            break;
    }
    if (!done) return done.failure();
    operation->kind = PixelOperationKind::interlace;
    operation->pBmp = std::make_shared<const TBitmap>(work.take());
    return operation;
}

Result<TPixelOperation> makeFill(const TBitmap& image, const Region* region, const PixelSelection* pSelection,
                                 Colour colour) {
    Result<TPixelOperation> operation = selectedOrReason(image, region, pSelection);
    if (operation) operation->colour = colour;
    return operation;
}

Result<TPixelOperation> makeGlow(const TBitmap& image, const Region* region, const PixelSelection* pSelection,
                                 Colour colour) {
    Result<TPixelOperation> operation = selectedOrReason(image, region, pSelection);
    if (!operation) return operation;
    const Region inside = operation->region ? *operation->region : Region::rectangle(operation->box());
    Result<TBitmap> pixels = glow(image, inside, colour);
    if (!pixels) return pixels.failure();
    operation->kind = PixelOperationKind::glow;
    operation->pBmp = std::make_shared<const TBitmap>(pixels.take());
    return operation;
}

void drawPixelOperation(TBitmap* pCanvas, const TPixelOperation& strOperation) {
    GLIMMER_ASSERT(pCanvas != nullptr, "pCanvas!=NULL", "uEditor");
    const Rect box = strOperation.box();
    const Region whole = Region::rectangle(box);
    const Region& clip = strOperation.region ? *strOperation.region : whole;
    if (strOperation.kind == PixelOperationKind::fill) {
        for (const Rect& rect : clip.rects()) pCanvas->fill(rect, strOperation.colour);
        return;
    }
    GLIMMER_ASSERT(strOperation.pBmp != nullptr, "strOperation.pBmp != NULL", "uEditor");
    const TBitmap* pixels = strOperation.pBmp.get();
    if (strOperation.kind == PixelOperationKind::glow) {
        copyPixels(*pCanvas, {box.left - glowMargin, box.top - glowMargin}, *pixels);
        return;
    }
    for (const Rect& rect : clip.rects())
        copyPixels(*pCanvas, {rect.left, rect.top}, *pixels, rect.moved(-box.left, -box.top));
}

}  // namespace glimmer
