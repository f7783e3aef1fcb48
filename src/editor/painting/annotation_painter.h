#pragma once

#include <cstdint>
#include <span>

#include "common/bitmap.h"
#include "editor/annotations/shapes_list.h"
#include "editor/annotations/uShapes.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// What of the annotations is painted, and where the bitmap lies.
struct PaintOptions {
    bool shadows = true;  ///< option "display shadows"
    /// The annotation whose label is being edited in place and therefore not painted; 0 for none.
    uint32_t editedId = 0;
    /// The image's point that is the bitmap's top left pixel.
    Point origin = {0, 0};
};

/// Paints annotations in their order onto a 32-bit bitmap, of which no pixel outside `clip` (in the bitmap's pixels)
/// is touched. Painting an opaque bitmap in pieces gives the same pixels as painting it at once. Transparent and
/// half-transparent pixels are blended right and keep straight alpha.
void paintAnnotations(TBitmap& target, const Rect& clip, const TShapesList& shapes, TextPainter& text,
                      const PaintOptions& options = {});
/// The same for one annotation.
void paintAnnotation(TBitmap& target, const Rect& clip, const TBBShape& shape, TextPainter& text,
                     const PaintOptions& options = {});

// Decorations of the canvas, painted in the bitmap's pixels (the screen's when the view is zoomed).

/// Squares of `size` pixels around the points: white with a border in the guides' colour.
void paintHandles(TBitmap& target, const Rect& clip, std::span<const Point> points, int32_t size);
/// Lines of 1 pixel in guideColour across the whole bitmap.
void paintGuides(TBitmap& target, const Rect& clip, std::span<const GuideLine> guides);

}  // namespace glimmer
