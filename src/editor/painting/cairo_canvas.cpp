#include "editor/painting/cairo_canvas.h"

#include <new>
#include <numbers>

namespace glimmer {

CairoCanvas::CairoCanvas(uint8_t* pixels, size_t stride, const Rect& area)
    : pixels_(pixels),
      stride_(stride),
      area_(area),
      surface_(cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_ARGB32, area.width(), area.height(),
                                                   static_cast<int>(stride))),
      context_(cairo_create(surface_.get())) {
    if (cairo_status(context_.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    cairo_translate(context_.get(), -area.left, -area.top);
}

void CairoCanvas::setColour(Colour colour, double alpha) const {
    cairo_set_source_rgba(context_.get(), redOf(colour) / 255.0, greenOf(colour) / 255.0, blueOf(colour) / 255.0,
                          alpha);
}

void CairoCanvas::blendAt(uint8_t* pixel, Colour colour, uint32_t alpha) {
    const uint32_t rest = 255 - alpha;
    const auto over = [alpha, rest](uint32_t above, uint32_t below) {
        return static_cast<uint8_t>(multiplied(above, alpha) + multiplied(below, rest));
    };
    pixel[0] = over(blueOf(colour), pixel[0]);
    pixel[1] = over(greenOf(colour), pixel[1]);
    pixel[2] = over(redOf(colour), pixel[2]);
    pixel[3] = over(255, pixel[3]);
}

void ellipsePath(cairo_t* cr, double left, double top, double right, double bottom) {
    if (right <= left || bottom <= top) return;
    cairo_save(cr);
    cairo_translate(cr, (left + right) / 2, (top + bottom) / 2);
    cairo_scale(cr, (right - left) / 2, (bottom - top) / 2);
    cairo_new_sub_path(cr);
    cairo_arc(cr, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_close_path(cr);
    cairo_restore(cr);
}

}  // namespace glimmer
