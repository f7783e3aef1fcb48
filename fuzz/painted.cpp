#include "fuzz/painted.h"

#include <algorithm>

#include "editor/painting/annotation_painter.h"
#include "editor/painting/cairo_text_painter.h"
#include "fuzz/fuzz.h"

namespace {

using namespace glimmer;

constexpr int32_t side = 48;

/// Paints on white; only pixels of `touched`, in image pixels, may change.
void paintAt(Point origin, const TBBShape& shape, TextPainter& text, const Rect& touched) {
    TBitmap target = TBitmap::create(side, side, PixelFormat::Bgra32).take();
    target.fill(target.bounds(), rgb(255, 255, 255));
    PaintOptions options;
    options.origin = origin;
    paintAnnotation(target, target.bounds(), shape, text, options);
    const Rect inside = touched.moved(-origin.x, -origin.y).intersected(target.bounds());
    for (int32_t y = 0; y < side; ++y)
        for (int32_t x = 0; x < side; ++x)
            if (!inside.contains({x, y})) FUZZ_CHECK(target.pixel(x, y) == rgb(255, 255, 255));
}

}  // namespace

void paintForFuzzer(const TShapesList& shapes) {
    static CairoTextPainter text;
    const size_t count = std::min<size_t>(shapes.size(), 4);
    for (size_t i = 0; i < count; ++i) {
        TBBShape shape = shapes[i];
        const Rect given = shape.bounds();
        paintAt({0, 0}, shape, text, given);
        paintAt({given.left - 8, given.top - 8}, shape, text, given);
        paintAt({given.right - side / 2, given.bottom - side / 2}, shape, text, given);
        fitLabel(shape, text);
        shape.layOut();
        const Rect fitted = shape.bounds();
        paintAt({shape.text.rectangle.left - 2, shape.text.rectangle.top - 2}, shape, text, fitted);
        static_cast<void>(shape.guides());
        static_cast<void>(shape.freeLineEnds());
        static_cast<void>(shape.partAt({fitted.left, fitted.top}));
        shape.moveBy(fitted.left, fitted.bottom);
        paintAt({0, 0}, shape, text, shape.bounds());
    }
}
