#include "capture/stamps.h"

namespace glimmer {

namespace {

constexpr int32_t margin = 5;  // from the picture's edges and between stamps, in pixels

/// A label alone, at that place.
TBBShape stamp(const std::string& text, Point at, const std::string& fontName, TextPainter& painter) {
    TShapeStyle style;
    style.shape.visible = false;
    style.line.visible = false;
    style.number.visible = false;
    style.text.visible = true;
    style.text.fontName = fontName;
    style.text.alignment = TextAlignment::Left;
    style.text.position = freeTextPosition;
    const Rect corner{at.x, at.y, at.x, at.y};
    TBBShape shape(style, corner);
    shape.text.text = text;
    shape.text.rectangle = corner;
    fitLabelUnwrapped(shape, painter);
    shape.setShapeRect(shape.text.rectangle);
    return shape;
}

}  // namespace

TShapesList captureStamps(const std::string& url, const std::string& title, const StampOptions& options,
                          TextPainter& painter) {
    TShapesList stamps;
    if (url.empty()) return stamps;
    Point at{margin, margin};
    if (options.url) {
        const TBBShape address = stamp(url, at, options.fontName, painter);
        at.y += address.text.rectangle.height() + margin;
        stamps.add(address);
    }
    if (options.title) stamps.add(stamp(title, at, options.fontName, painter));
    return stamps;
}

}  // namespace glimmer
