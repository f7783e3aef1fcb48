#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "common/bitmap.h"
#include "common/colour.h"
#include "common/region.h"

namespace glimmer {

/// What an operation on the selected pixels does; also the numbers of the effects.
enum class PixelOperationKind : uint8_t { fill = 1, blur = 2, grayscale = 3, invert = 4, glow = 5, interlace = 6 };

/// One operation that changed pixels, kept so that it can be drawn again. Copies share the pixels, which never change.
struct TPixelOperation {
    /// The selection's rectangle, its right and bottom pixels inside; all 0 when there is a region.
    Rect rectangle;
    Colour colour = 0;             ///< of a fill
    std::optional<Region> region;  ///< the selection, when it is not a plain rectangle
    PixelOperationKind kind = PixelOperationKind::fill;
    std::shared_ptr<const TBitmap> pBmp;  ///< the resulting pixels; every kind but fill has them

    /// The smallest rectangle around the selected pixels, right and bottom outside.
    [[nodiscard]] Rect box() const;
    /// The rectangle around the pixels that drawing may change: the box, or for a glow all that it reaches.
    [[nodiscard]] Rect reach() const;
};

/// A selection that was made by dragging a rectangle.
struct PixelSelection {
    enum class Outline : uint8_t { rectangle, ellipse };
    /// May be inverted. Once normalised, its right and bottom pixels are inside.
    Rect rectangle;
    Outline outline = Outline::rectangle;
};

/// The smallest rectangle (right and bottom outside) around the selected pixels that lie in a picture of that size:
/// those of `region` or, when that is null, of `pSelection`. Empty when there are none. To crop to.
Rect selectionBox(Size picture, const Region* region, const PixelSelection* pSelection);

// Each of the following makes the record of one operation on the selected pixels of `image`: those of `region` or, when
// that is null, of `pSelection` (one of the two must be given). A selection is cut to the picture first. They fail when
// nothing of it lies in the picture and when memory cannot be had. The image is not changed; drawPixelOperation does.

/// Effect 2 blur (standard deviation blurIntensity / 10 pixels), 3 grayscale, 4 invert, 6 interlace; any other number
/// gives the pixels as they are. The record is of kind `interlace` whatever the effect, since kinds 2, 3, 4 and 6 are
/// drawn alike. Grayscale, invert and interlace leave the transparency of the image alone; blur blurs it too, so that
/// writing that only differs in its transparency becomes illegible like any other.
Result<TPixelOperation> applyEffect(int32_t effect, const TBitmap& image, const Region* region,
                                    const PixelSelection* pSelection, int32_t blurIntensity);
/// Fills with one colour, opaque.
Result<TPixelOperation> makeFill(const TBitmap& image, const Region* region, const PixelSelection* pSelection,
                                 Colour colour);
/// Lays a glow around the selection.
Result<TPixelOperation> makeGlow(const TBitmap& image, const Region* region, const PixelSelection* pSelection,
                                 Colour colour);

/// Draws a record onto a picture, which is the one it was made of or another of the same size and format. No pixel
/// outside operation.reach() changes; outside the selection only a glow changes pixels.
void drawPixelOperation(TBitmap* pCanvas, const TPixelOperation& strOperation);

}  // namespace glimmer
