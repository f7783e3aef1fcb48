#pragma once

#include "editor/annotations/uShapes.h"
#include "editor/painting/cairo_canvas.h"
#include "editor/painting/text_painter.h"

// How each part of an annotation is drawn on a canvas. None looks at visibility.

namespace glimmer {

void paintShape(CairoCanvas& canvas, const TBBShape& shape, bool shadow);
void paintLine(CairoCanvas& canvas, const TBBShape& shape, bool shadow);
void paintLabel(CairoCanvas& canvas, const TBBShape& shape, TextPainter& text, bool withText, bool shadow);
void paintBadge(CairoCanvas& canvas, const TBBShape& shape, TextPainter& text, bool shadow);

/// The picture stretched to `rect`: each pixel is the mean of what it covers.
void paintPicture(CairoCanvas& canvas, const TBitmap& picture, const Rect& rect);
/// A text's mask in one colour, its top left pixel at `at`.
void paintMask(CairoCanvas& canvas, const TextMask& mask, Point at, Colour colour);

}  // namespace glimmer
