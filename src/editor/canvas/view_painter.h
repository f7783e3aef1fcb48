#pragma once

#include <vector>

#include "common/bitmap.h"
#include "common/region.h"
#include "editor/annotations/shape_geometry.h"
#include "editor/canvas/canvas_view.h"

namespace glimmer {

/// What lies over the picture on the canvas and is no part of it, in picture coordinates.
struct CanvasOverlay {
    Region selection;             ///< outlined with dashes
    std::vector<Point> polyline;  ///< a polygon that is being drawn
    std::vector<Point> handles;   ///< squares of the screen's size
    std::vector<GuideLine> guides;
    bool dimOutside = false;  ///< darken what is not selected (capture mode)
    bool operator==(const CanvasOverlay&) const = default;
};

/// How the canvas looks on this screen and under this theme.
struct CanvasLook {
    Colour desk = rgb(226, 230, 235);    ///< around the picture
    Colour border = rgb(168, 176, 186);  ///< line around the picture
    int32_t dotsPerInch = 96;
};

/// Paints the part `clip` of the window into `target`, a 32-bit bitmap of the window's size: desk, picture at its
/// zoom, overlay. `picture` is opaque; its pixels that show inside `clip` must be good. Everything inside `clip` is
/// painted, once, and nothing outside.
void paintView(TBitmap& target, const Rect& clip, const CanvasView& view, const TBitmap& picture,
               const CanvasOverlay& overlay, const CanvasLook& look);

/// The view pixels that an overlay covers.
Rect overlayArea(const CanvasOverlay& overlay, const CanvasView& view, int32_t dotsPerInch);

}  // namespace glimmer
