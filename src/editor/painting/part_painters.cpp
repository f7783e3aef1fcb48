#include "editor/painting/part_painters.h"

#include <cmath>
#include <numbers>
#include <string>

#include "common/assertion.h"
#include "editor/painting/badge_picture.h"

namespace glimmer {

namespace {

// --- shadows

/// A shadow is the figure in black, laid down a few times, each a little farther away: dark near the figure and
/// faint at its rim. The farthest step and one pixel of antialiasing stay within shadowReach.
constexpr int32_t shadowSteps = 3;
constexpr double shadowAlpha = 0.11;
static_assert(shadowSteps + 1 <= shadowReach);

/// Lets nothing through inside of the ellipse, so that the shadow of a half-transparent shape does not darken its
/// fill.
void clipOutsideEllipse(CairoCanvas& canvas, const Rect& rect) {
    cairo_t* cr = canvas.cairo();
    const Rect all = rect.inflated(shadowReach);
    cairo_rectangle(cr, all.left, all.top, all.width(), all.height());
    ellipsePath(cr, rect.left, rect.top, rect.right, rect.bottom);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_clip(cr);
}

/// Calls `draw` for each step of the shadow with the context moved.
template <class Draw>
void shadowed(CairoCanvas& canvas, Draw&& draw) {
    for (int32_t step = 1; step <= shadowSteps; ++step) {
        cairo_t* cr = canvas.cairo();
        cairo_save(cr);
        cairo_translate(cr, step, step);
        canvas.setColour(0, shadowAlpha);
        draw();
        cairo_restore(cr);
    }
}

/// The shadow of a rectangle, inside of which nothing is darkened. No clip: one of two rectangles is slow, and what
/// is left of each step is a band on the right and one below.
void rectShadow(CairoCanvas& canvas, const Rect& rect) {
    cairo_t* cr = canvas.cairo();
    canvas.setColour(0, shadowAlpha);
    for (int32_t step = 1; step <= shadowSteps; ++step) {
        cairo_rectangle(cr, rect.right, rect.top + step, step, rect.height());
        const int32_t left = std::min(rect.left + step, rect.right);
        cairo_rectangle(cr, left, rect.bottom, rect.right - left, step);
        cairo_fill(cr);
    }
}

void ellipseShadow(CairoCanvas& canvas, const Rect& rect) {
    cairo_t* cr = canvas.cairo();
    cairo_save(cr);
    clipOutsideEllipse(canvas, rect);
    shadowed(canvas, [&] {
        ellipsePath(cr, rect.left, rect.top, rect.right, rect.bottom);
        cairo_fill(cr);
    });
    cairo_restore(cr);
}

// --- the shape

void fillRect(cairo_t* cr, const Rect& rect) {
    cairo_rectangle(cr, rect.left, rect.top, rect.width(), rect.height());
    cairo_fill(cr);
}

/// The outline of the given width inside of the rectangle, as a path to be filled.
void framePath(cairo_t* cr, const Rect& rect, int32_t width, bool ellipse) {
    const Rect inner = rect.inflated(-width);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    if (ellipse) {
        ellipsePath(cr, rect.left, rect.top, rect.right, rect.bottom);
        ellipsePath(cr, inner.left, inner.top, inner.right, inner.bottom);
    } else {
        cairo_rectangle(cr, rect.left, rect.top, rect.width(), rect.height());
        if (!inner.empty()) cairo_rectangle(cr, inner.left, inner.top, inner.width(), inner.height());
    }
}

void shapeShadow(CairoCanvas& canvas, const TShapeObject& shape, const Rect& rect) {
    if (shape.isFilled()) {
        if (shape.isEllipse())
            ellipseShadow(canvas, rect);
        else
            rectShadow(canvas, rect);
        return;
    }
    cairo_t* cr = canvas.cairo();
    cairo_save(cr);
    shadowed(canvas, [&] {
        framePath(cr, rect, shape.settings.frameWidth, shape.isEllipse());
        cairo_fill(cr);
    });
    cairo_restore(cr);
}

// --- the line

struct Vector {
    double x;
    double y;
};

/// One end of the line: where it is, the direction it points to, and how far its figure shortens the shaft.
struct End {
    Vector at;
    Vector outwards;
    LineEnd style;
};

void endPath(cairo_t* cr, const End& end, int32_t width) {
    if (end.style == LineEnd::Bullet) {
        cairo_new_sub_path(cr);
        cairo_arc(cr, end.at.x, end.at.y, bulletRadius(width), 0, 2 * std::numbers::pi);
        cairo_close_path(cr);
    } else if (end.style == LineEnd::Arrow) {
        const double length = arrowLength(width);
        const double half = arrowHalfBase(width);
        const Vector base = {end.at.x - end.outwards.x * length, end.at.y - end.outwards.y * length};
        cairo_move_to(cr, end.at.x, end.at.y);
        cairo_line_to(cr, base.x - end.outwards.y * half, base.y + end.outwards.x * half);
        cairo_line_to(cr, base.x + end.outwards.y * half, base.y - end.outwards.x * half);
        cairo_close_path(cr);
    }
}

/// The shaft ends in the middle of an arrow head, so that its blunt end never shows beside the tip.
Vector shaftEnd(const End& end, int32_t width, double length) {
    if (end.style != LineEnd::Arrow) return end.at;
    const double back = std::min(arrowLength(width) / 2.0, length / 2);
    return {end.at.x - end.outwards.x * back, end.at.y - end.outwards.y * back};
}

struct LineFigure {
    End front;
    End back;
    Vector shaftFrom;
    Vector shaftTo;
    int32_t width;
};

LineFigure figureOf(const LineRoute& route, const TLineSettings& settings) {
    // The middle of the pixels.
    const Vector front = {route.front.x + 0.5, route.front.y + 0.5};
    const Vector back = {route.back.x + 0.5, route.back.y + 0.5};
    const double length = std::max(1e-6, std::hypot(front.x - back.x, front.y - back.y));
    const Vector way = {(front.x - back.x) / length, (front.y - back.y) / length};
    LineFigure figure{{front, way, settings.front}, {back, {-way.x, -way.y}, settings.back}, {}, {}, settings.width};
    figure.shaftFrom = shaftEnd(figure.front, settings.width, length);
    figure.shaftTo = shaftEnd(figure.back, settings.width, length);
    return figure;
}

/// The whole figure in the source colour, `border` pixels larger on every side.
void drawFigure(cairo_t* cr, const LineFigure& figure, double border) {
    cairo_set_line_cap(cr, border > 0 ? CAIRO_LINE_CAP_SQUARE : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_width(cr, figure.width + 2 * border);
    cairo_move_to(cr, figure.shaftFrom.x, figure.shaftFrom.y);
    cairo_line_to(cr, figure.shaftTo.x, figure.shaftTo.y);
    cairo_stroke(cr);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(cr, 2 * border);
    for (const End* end : {&figure.front, &figure.back}) {
        endPath(cr, *end, figure.width);
        cairo_fill_preserve(cr);
        if (border > 0) cairo_stroke(cr);
        cairo_new_path(cr);
    }
}

}  // namespace

void paintShape(CairoCanvas& canvas, const TBBShape& annotation, bool shadow) {
    const TShapeObject& shape = annotation.shape;
    const TShapeSettings& settings = shape.settings;
    const Rect rect = shape.rectangle.normalized();
    if (settings.kind == ShapeKind::Drawing) {
        GLIMMER_ASSERT(shape.drawing != nullptr, "pPicture != NULL", "uShapes");
        paintPicture(canvas, *shape.drawing, rect);
        return;
    }
    if (rect.empty()) return;
    if (shadow) shapeShadow(canvas, shape, rect);
    cairo_t* cr = canvas.cairo();
    cairo_save(cr);
    if (shape.isFilled()) {
        canvas.setColour(settings.shapeColour, settings.opacity / 100.0);
        if (shape.isEllipse()) {
            // Up to the middle of the outline, whose soft inner border then blends with the fill.
            const double inset = settings.frameWidth / 2.0;
            ellipsePath(cr, rect.left + inset, rect.top + inset, rect.right - inset, rect.bottom - inset);
            cairo_fill(cr);
        } else {
            fillRect(cr, rect);
        }
    }
    canvas.setColour(settings.frameColour);
    framePath(cr, rect, settings.frameWidth, shape.isEllipse());
    cairo_fill(cr);
    cairo_restore(cr);
    canvas.flush();
}

void paintLine(CairoCanvas& canvas, const TBBShape& annotation, bool shadow) {
    const std::optional<LineRoute> route = annotation.route();
    if (!route) return;
    const LineFigure figure = figureOf(*route, annotation.line.settings);
    cairo_t* cr = canvas.cairo();
    cairo_save(cr);
    if (shadow) shadowed(canvas, [&] { drawFigure(cr, figure, 0); });
    canvas.setColour(annotation.line.settings.frameColour);
    drawFigure(cr, figure, 1);
    canvas.setColour(annotation.line.settings.lineColour);
    drawFigure(cr, figure, 0);
    cairo_restore(cr);
    canvas.flush();
}

void paintLabel(CairoCanvas& canvas, const TBBShape& annotation, TextPainter& text, bool withText, bool shadow) {
    const TTextObject& label = annotation.text;
    const Rect rect = label.rectangle.normalized();
    if (rect.empty()) return;
    if (label.settings.filled) {
        cairo_t* cr = canvas.cairo();
        cairo_save(cr);
        if (shadow) rectShadow(canvas, rect);
        canvas.setColour(label.settings.frameColour);
        fillRect(cr, rect);
        const Rect inner = rect.inflated(-1);
        canvas.setColour(label.settings.backgroundColour);
        if (!inner.empty()) fillRect(cr, inner);
        cairo_restore(cr);
        canvas.flush();
    }
    const Rect area = TTextObject::textArea(rect);
    if (!withText || label.text.empty() || area.empty() || area.intersected(canvas.area()).empty()) return;
    paintMask(canvas, *text.mask(label.settings, label.text, {area.width(), area.height()}), {area.left, area.top},
              label.settings.textColour);
}

void paintBadge(CairoCanvas& canvas, const TBBShape& annotation, TextPainter& text, bool shadow) {
    const Rect badge = annotation.number.badge(annotation);
    if (shadow) {
        ellipseShadow(canvas, badge);
        canvas.flush();
    }
    const TBitmap& picture = badgePicture();
    const Rect part = badge.intersected(canvas.area());
    for (int32_t y = part.top; y < part.bottom; ++y) {
        for (int32_t x = part.left; x < part.right; ++x) {
            const Colour colour = picture.pixel(x - badge.left, y - badge.top);
            if (colour != badgeTransparentColour) canvas.blend(x, y, colour, 255);
        }
    }

    TTextSettings font;
    font.fontName = "Arial";
    font.fontSize = 10;
    font.bold = true;
    font.alignment = TextAlignment::Centre;
    const std::string digits = std::to_string(annotation.number.number);
    // Long numbers may stand out on both sides, as far as the annotation's bounds allow.
    const Size size = text.measure(font, digits, 0);
    const int32_t width = std::clamp(size.width + 2, 1, badge.width() + 2 * shadowReach);
    const Point at = {middle(badge.left, badge.right) - width / 2, middle(badge.top, badge.bottom) - size.height / 2};
    paintMask(canvas, *text.mask(font, digits, {width, size.height}), at, rgb(0, 0, 0));
}

void paintMask(CairoCanvas& canvas, const TextMask& mask, Point at, Colour colour) {
    const Rect all = {at.x, at.y, at.x + mask.size.width, at.y + mask.size.height};
    const Rect part = all.intersected(canvas.area());
    for (int32_t y = part.top; y < part.bottom; ++y) {
        const uint8_t* row =
            mask.coverage.data() + static_cast<size_t>(y - at.y) * static_cast<size_t>(mask.size.width);
        for (int32_t x = part.left; x < part.right; ++x)
            if (const uint8_t alpha = row[x - at.x]; alpha != 0) canvas.blend(x, y, colour, alpha);
    }
}

}  // namespace glimmer
