#pragma once

#include <cstdint>
#include <string>

#include "common/bitmap.h"
#include "common/clock.h"
#include "editor/painting/text_painter.h"
#include "settings/options.h"

namespace glimmer {

enum class WatermarkPosition : uint8_t {
    TopLeft,
    TopCentre,
    TopRight,
    MiddleLeft,
    MiddleRight,
    BottomLeft,
    BottomCentre,
    BottomRight,
    Centred,
};

/// What is drawn on every picture that leaves the program, and where.
struct WatermarkSettings {
    bool fromBitmap = false;
    std::string bitmapFile;      ///< UTF-8 path
    int32_t bitmapOpacity = 10;  ///< percent
    std::string text;            ///< with the placeholders of file names
    std::string fontName = "Arial";
    int32_t backgroundOpacity = 5;  ///< percent, of the box behind the text
    Colour background = 0xD8FEFE;
    Colour frame = 0x808080;  ///< of the line around the box, and of the text
    int32_t frameWidth = 1;   ///< pixels, inside the box; 0: no line
    TextAlignment alignment = TextAlignment::Centre;
    WatermarkPosition position = WatermarkPosition::BottomRight;
    int32_t margins = 10;  ///< pixels to the picture's edges
};

WatermarkSettings watermarkSettings(const Options& options);

/// Where a watermark of that size lies on a picture. A size larger than the room between the margins lies at the
/// upper left end of it.
Rect watermarkPlace(Size picture, Size mark, WatermarkPosition position, int32_t margins);

/// Where a bitmap lies that is only some rows of a picture: watermarks are placed on the whole one and drawn as far as
/// the rows go. As it is made, the bitmap is all of it.
struct PictureRows {
    Size whole{};     ///< empty: the bitmap's own
    int32_t top = 0;  ///< row of the picture that is the bitmap's first
};

/// Draws a text watermark; the placeholders are replaced already. Nothing for an empty text. A long text wraps within
/// the margins; what is still too large is cut off at the picture's edges.
void drawTextWatermark(TBitmap& picture, const WatermarkSettings& settings, const std::string& text,
                       TextPainter& painter, const PictureRows& rows = {});
/// Draws a picture as watermark, its own transparency times the opacity. One larger than the room between the margins
/// is reduced to fit. Fails only when the memory cannot be had.
Status drawBitmapWatermark(TBitmap& picture, const WatermarkSettings& settings, const TBitmap& mark,
                           const PictureRows& rows = {});

/// Draws the watermark that the current options describe, if they want one, on a picture that is about to leave the
/// program. Fails, with a sentence and the picture unmarked, when the bitmap file cannot be read.
Status applyWatermark(TBitmap& picture, const Options& options, const std::string& address, const std::string& title,
                      Clock& clock, TextPainter& painter, const PictureRows& rows = {});

}  // namespace glimmer
