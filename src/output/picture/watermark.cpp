#include "output/picture/watermark.h"

#include <algorithm>
#include <optional>

#include "imaging/scaling.h"

namespace glimmer {

namespace {

constexpr int32_t padding = 6;  // between the text and its box, pixels

uint8_t mixed(uint8_t below, uint8_t above, uint32_t alpha) {
    return static_cast<uint8_t>((below * (255 - alpha) + above * alpha + 127) / 255);
}

/// Puts a colour over a pixel; what was transparent takes on the colour's alpha.
void blend(uint8_t* pixel, bool hasAlpha, Colour colour, uint32_t alpha) {
    if (alpha == 0) return;
    const uint8_t parts[] = {blueOf(colour), greenOf(colour), redOf(colour)};
    if (!hasAlpha || pixel[3] == 255) {
        for (size_t i = 0; i < 3; ++i) pixel[i] = mixed(pixel[i], parts[i], alpha);
        return;
    }
    // Straight alpha: the colours weigh as much as they are seen.
    const uint32_t below = pixel[3] * (255 - alpha) / 255;
    const uint32_t whole = below + alpha;
    for (size_t i = 0; i < 3; ++i)
        pixel[i] = static_cast<uint8_t>((pixel[i] * below + parts[i] * alpha + whole / 2) / whole);
    pixel[3] = static_cast<uint8_t>(whole);
}

Size wholeOf(const TBitmap& picture, const PictureRows& rows) {
    return rows.whole == Size{} ? picture.size() : rows.whole;
}

/// `area` and what is asked for alphas lie `top` rows further down than the bitmap's own.
template <class AlphaAt>
void blendArea(TBitmap& picture, int32_t top, const Rect& area, Colour colour, const AlphaAt& alphaAt) {
    const Rect visible = area.moved(0, -top).intersected(picture.bounds());
    const bool hasAlpha = picture.format() == PixelFormat::Bgra32;
    for (int32_t y = visible.top; y < visible.bottom; ++y) {
        for (int32_t x = visible.left; x < visible.right; ++x)
            blend(picture.row(y) + static_cast<size_t>(x) * picture.bytesPerPixel(), hasAlpha, colour,
                  alphaAt(x, y + top));
    }
}

uint32_t alphaOf(int32_t percent) { return static_cast<uint32_t>(std::clamp(percent, 0, 100) * 255 + 50) / 100; }

Size roomOf(Size picture, int32_t margins) {
    return {std::max(picture.width - 2 * margins, 0), std::max(picture.height - 2 * margins, 0)};
}

/// Start of `length` pixels in `room` behind `margin`: -1 at its start, 0 in its middle, 1 at its end.
int32_t placed(int32_t length, int32_t room, int32_t margin, int side) {
    if (length >= room || side < 0) return margin;
    return margin + (side > 0 ? room - length : (room - length) / 2);
}

int columnOf(WatermarkPosition position) {
    switch (position) {
        case WatermarkPosition::TopLeft:
        case WatermarkPosition::MiddleLeft:
        case WatermarkPosition::BottomLeft:
            return -1;
        case WatermarkPosition::TopRight:
        case WatermarkPosition::MiddleRight:
        case WatermarkPosition::BottomRight:
            return 1;
        default:
            return 0;
    }
}

int rowOf(WatermarkPosition position) {
    if (position <= WatermarkPosition::TopRight) return -1;
    const bool bottom = position >= WatermarkPosition::BottomLeft && position <= WatermarkPosition::BottomRight;
    return bottom ? 1 : 0;
}

}  // namespace

WatermarkSettings watermarkSettings(const Options& options) {
    WatermarkSettings settings;
    settings.fromBitmap = options.on("radWMFromBitmap");
    settings.bitmapFile = options.text("edtWMBitmapFile");
    settings.bitmapOpacity = options.number("spnWMBitmapOpacity");
    settings.text = options.text("edtWMText");
    settings.fontName = options.text("edtFontName");
    settings.backgroundOpacity = options.number("spnWMBackgroundOpacity");
    settings.background = static_cast<Colour>(options.number("clrWMBackground"));
    settings.frame = static_cast<Colour>(options.number("clrWMFrame"));
    settings.frameWidth = options.number("spnWMFrameWidth");
    constexpr TextAlignment alignments[] = {TextAlignment::Left, TextAlignment::Centre, TextAlignment::Right};
    settings.alignment = alignments[options.number("cmbWMTextAlignment")];
    settings.position = static_cast<WatermarkPosition>(options.number("cmbWMPosition"));
    settings.margins = options.number("spnWMMargins");
    return settings;
}

Rect watermarkPlace(Size picture, Size mark, WatermarkPosition position, int32_t margins) {
    const Size room = roomOf(picture, margins);
    const int32_t left = placed(mark.width, room.width, margins, columnOf(position));
    const int32_t top = placed(mark.height, room.height, margins, rowOf(position));
    return {left, top, left + mark.width, top + mark.height};
}

void drawTextWatermark(TBitmap& picture, const WatermarkSettings& settings, const std::string& text,
                       TextPainter& painter, const PictureRows& rows) {
    if (text.empty() || picture.empty()) return;
    const Size whole = wholeOf(picture, rows);
    TTextSettings font;
    font.fontName = settings.fontName;
    font.alignment = settings.alignment;
    const int32_t border = padding + settings.frameWidth;
    const int32_t widest = std::max(roomOf(whole, settings.margins).width - 2 * border, 1);
    Size area = painter.measure(font, text, 0);
    if (area.width > widest) area = {widest, painter.measure(font, text, widest).height};
    area = {std::clamp(area.width, 1, TextPainter::maxSide), std::clamp(area.height, 1, TextPainter::maxSide)};

    const Rect box =
        watermarkPlace(whole, {area.width + 2 * border, area.height + 2 * border}, settings.position, settings.margins);
    const uint32_t backgroundAlpha = alphaOf(settings.backgroundOpacity);
    const Rect inner = box.inflated(-settings.frameWidth);
    blendArea(picture, rows.top, inner, settings.background, [&](int32_t, int32_t) { return backgroundAlpha; });
    blendArea(picture, rows.top, box, settings.frame, [&inner](int32_t x, int32_t y) {
        return inner.contains({x, y}) ? 0U : 255U;
    });

    const std::shared_ptr<const TextMask> mask = painter.mask(font, text, area);
    if (!mask) return;
    const Point origin{box.left + border, box.top + border};
    const Rect written{origin.x, origin.y, origin.x + mask->size.width, origin.y + mask->size.height};
    blendArea(picture, rows.top, written, settings.frame, [&](int32_t x, int32_t y) -> uint32_t {
        const auto index = static_cast<size_t>(y - origin.y) * static_cast<size_t>(mask->size.width) +
                           static_cast<size_t>(x - origin.x);
        return mask->coverage[index];
    });
}

Status drawBitmapWatermark(TBitmap& picture, const WatermarkSettings& settings, const TBitmap& mark,
                           const PictureRows& rows) {
    const Size whole = wholeOf(picture, rows);
    const Size room = roomOf(whole, settings.margins);
    if (mark.empty() || room.width < 1 || room.height < 1) return {};
    std::optional<TBitmap> reduced;
    if (mark.width() > room.width || mark.height() > room.height) {
        const double scale =
            std::min(static_cast<double>(room.width) / mark.width(), static_cast<double>(room.height) / mark.height());
        Result<TBitmap> fitting = resized(mark, std::max(static_cast<int32_t>(mark.width() * scale), 1),
                                          std::max(static_cast<int32_t>(mark.height() * scale), 1));
        if (!fitting) return fitting.failure();
        reduced = fitting.take();
    }
    const TBitmap& drawn = reduced ? *reduced : mark;
    const uint32_t opacity = alphaOf(settings.bitmapOpacity);
    const Rect place = watermarkPlace(whole, drawn.size(), settings.position, settings.margins).moved(0, -rows.top);
    const Rect visible = place.intersected(picture.bounds());
    const bool hasAlpha = picture.format() == PixelFormat::Bgra32;
    for (int32_t y = visible.top; y < visible.bottom; ++y) {
        const uint8_t* from = drawn.row(y - place.top);
        for (int32_t x = visible.left; x < visible.right; ++x) {
            const uint8_t* source = from + static_cast<size_t>(x - place.left) * drawn.bytesPerPixel();
            const uint32_t own = drawn.format() == PixelFormat::Bgra32 ? source[3] : 255U;
            blend(picture.row(y) + static_cast<size_t>(x) * picture.bytesPerPixel(), hasAlpha,
                  rgb(source[2], source[1], source[0]), (own * opacity + 127) / 255);
        }
    }
    return {};
}

}  // namespace glimmer
