#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>

#include "common/bitmap.h"
#include "common/colour.h"
#include "common/geometry.h"

namespace glimmer {

struct CairoDeleter {
    void operator()(cairo_t* cr) const { cairo_destroy(cr); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using CairoContext = std::unique_ptr<cairo_t, CairoDeleter>;
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoDeleter>;

/// A piece of a 32-bit picture that can be painted on, by cairo and pixel by pixel, in the coordinates of the image.
/// Pixels are premultiplied; on opaque pixels that is the same as straight alpha, so that an opaque bitmap's own
/// memory serves. Lies over memory that must outlive it; nothing outside the piece is touched.
class CairoCanvas {
public:
    /// cairo's surfaces end at 32767 pixels.
    static constexpr int32_t maxSide = 16384;

    /// `pixels` is the top left pixel of `area`, whose sides are 1 to maxSide.
    CairoCanvas(uint8_t* pixels, size_t stride, const Rect& area);

    /// The piece's place in the image.
    [[nodiscard]] const Rect& area() const { return area_; }
    /// For drawing in image coordinates, after any blending of pixels. End with flush().
    [[nodiscard]] cairo_t* cairo() const {
        cairo_surface_mark_dirty(surface_.get());
        return context_.get();
    }
    void setColour(Colour colour, double alpha = 1) const;
    /// After drawing by cairo, before looking at or blending pixels.
    void flush() const { cairo_surface_flush(surface_.get()); }
    /// Blends a colour over one pixel of the area.
    void blend(int32_t x, int32_t y, Colour colour, uint32_t alpha) { blendAt(at(x, y), colour, alpha); }
    /// One pixel of the area: blue, green, red, alpha.
    [[nodiscard]] uint8_t* at(int32_t x, int32_t y) const {
        return pixels_ + static_cast<size_t>(y - area_.top) * stride_ + static_cast<size_t>(x - area_.left) * 4;
    }

private:
    static void blendAt(uint8_t* pixel, Colour colour, uint32_t alpha);

    uint8_t* pixels_;
    size_t stride_;
    Rect area_;
    CairoSurface surface_;
    CairoContext context_;
};

/// a * b / 255, rounded.
constexpr uint32_t multiplied(uint32_t a, uint32_t b) {
    const uint32_t product = a * b + 128;
    return (product + (product >> 8U)) >> 8U;
}

/// Adds an ellipse that fills the rectangle (real coordinates, right and bottom outside) to the path.
void ellipsePath(cairo_t* cr, double left, double top, double right, double bottom);

}  // namespace glimmer
