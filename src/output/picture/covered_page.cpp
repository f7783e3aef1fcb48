#include "output/picture/covered_page.h"

#include <algorithm>

namespace glimmer {

namespace {

constexpr int32_t coveringOpacity = 80;

bool mostlyOpaque(const TBitmap& drawing) {
    if (drawing.format() != PixelFormat::Bgra32) return true;
    int64_t opaque = 0;
    for (int32_t y = 0; y < drawing.height(); ++y) {
        const uint8_t* row = drawing.row(y);
        for (int32_t x = 0; x < drawing.width(); ++x) opaque += row[4 * x + 3] == 255 ? 1 : 0;
    }
    return 2 * opaque >= int64_t{drawing.width()} * drawing.height();
}

bool covers(const TBBShape& annotation) {
    if (!annotation.shape.settings.visible) return false;
    switch (annotation.shape.settings.kind) {
        case ShapeKind::FilledRectangle:
        case ShapeKind::FilledEllipse:
            return annotation.shape.settings.opacity >= coveringOpacity ||
                   (!annotation.text.settings.visible && !annotation.number.settings.visible);
        case ShapeKind::Drawing:
            return annotation.shape.drawing && mostlyOpaque(*annotation.shape.drawing);
        default:
            return false;
    }
}

}  // namespace

bool coversPage(const TShapesList& annotations) { return std::any_of(annotations.begin(), annotations.end(), covers); }

}  // namespace glimmer
