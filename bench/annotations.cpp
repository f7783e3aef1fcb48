// The annotations that the canvas and the recovery folder are measured with.

#include <random>

#include "editor/annotations/shapes_list.h"
#include "editor/annotations/styles.h"
#include "editor/painting/cairo_text_painter.h"
#include "harness.h"

namespace glimmer::bench {

TShapesList pageAnnotations() {
    CairoTextPainter text;
    std::mt19937 random(5);
    const auto any = [&](int32_t low, int32_t high) {
        return low + static_cast<int32_t>(random() % static_cast<uint32_t>(high - low));
    };
    constexpr ShapeKind kinds[] = {ShapeKind::FilledRectangle, ShapeKind::Rectangle, ShapeKind::FilledEllipse,
                                   ShapeKind::Ellipse};
    TShapesList list;
    for (int i = 0; i < 200; ++i) {
        TShapeStyle style = predefinedStyles()[static_cast<size_t>(i) % predefinedStyles().size()];
        style.shape.kind = kinds[i % 4];
        style.number.visible = i % 2 == 0;
        style.text.position = 1 + i % 12;
        const int32_t x = any(60, 900);
        const int32_t y = 60 + i * 49;
        TBBShape shape(style, {x, y, x + any(60, 280), y + any(30, 160)});
        shape.text.text = "Annotation " + std::to_string(i) + " says what is to be seen here";
        shape.number.number = i + 1;
        fitLabel(shape, text);
        list.insert(list.size(), std::move(shape));
    }
    return list;
}

}  // namespace glimmer::bench
