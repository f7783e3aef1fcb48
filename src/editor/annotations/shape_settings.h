#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "common/colour.h"

// The settings of an annotation's four parts: what a style holds and what a new annotation receives. Ranges stand
// beside the fields they belong to; clampSettings() brings foreign values into them.

namespace glimmer {

enum class ShapeKind : uint8_t {
    FilledRectangle = 1,
    Rectangle = 2,
    FilledEllipse = 3,
    Ellipse = 4,
    Drawing = 5,  ///< free-hand ink, a picture of its own
};
enum class TextAlignment : uint8_t { Left = 0, Centre = 1, Right = 2 };
enum class LineEnd : uint8_t { None = 1, Arrow = 2, Bullet = 3 };
enum class NumberPosition : uint8_t {
    OutsideTopLeft = 1,
    InsideTopLeft = 2,
    InsideCentre = 3,
    InsideBottomRight = 4,
};

constexpr int32_t minOpacity = 0, maxOpacity = 100;     ///< per cent
constexpr int32_t minLineWidth = 1, maxLineWidth = 11;  ///< pixels, of frames and lines alike
constexpr int32_t minFontSize = 1, maxFontSize = 400;   ///< points; what a file may hold, more than is offered
constexpr int32_t minTextPosition = 1, maxTextPosition = 12;
/// The position of a label that was placed by hand and follows none of the twelve.
constexpr int32_t freeTextPosition = 0;
/// No coordinate of an annotation lies farther out; sums of a few of them stay within 32 bits.
constexpr int32_t maxCoordinate = 1000000;
/// Length of a label's text and of a font or style name, in UTF-16 units.
constexpr size_t maxTextUnits = 65536;
constexpr size_t maxNameUnits = 255;
constexpr int32_t minStepNumber = 0, maxStepNumber = 99999;

/// Pen widths of free drawing and the one chosen at first.
constexpr std::array<int32_t, 7> penWidths = {1, 3, 5, 9, 13, 19, 25};
constexpr int32_t initialPenWidth = 5;
/// Font sizes offered and the one of a new label.
constexpr std::array<int32_t, 15> fontSizes = {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48};
constexpr int32_t initialFontSize = 11;

constexpr int32_t clampOpacity(int32_t v) { return std::clamp(v, minOpacity, maxOpacity); }
constexpr int32_t clampLineWidth(int32_t v) { return std::clamp(v, minLineWidth, maxLineWidth); }
constexpr int32_t clampFontSize(int32_t v) { return std::clamp(v, minFontSize, maxFontSize); }
constexpr int32_t clampCoordinate(int32_t v) { return std::clamp(v, -maxCoordinate, maxCoordinate); }
constexpr int32_t clampStepNumber(int32_t v) { return std::clamp(v, minStepNumber, maxStepNumber); }
/// Anything that is none of the twelve positions is free.
constexpr int32_t clampTextPosition(int32_t v) {
    return v >= minTextPosition && v <= maxTextPosition ? v : freeTextPosition;
}
constexpr Colour clampColour(Colour c) { return c & 0xFFFFFFU; }

struct TShapeSettings {
    ShapeKind kind = ShapeKind::FilledRectangle;
    Colour shapeColour = rgb(204, 236, 255);  ///< fill of the filled kinds
    Colour frameColour = rgb(255, 0, 0);
    int32_t opacity = 46;    ///< of the fill, 0 to 100 per cent
    int32_t frameWidth = 1;  ///< 1 to 11 pixels, drawn inside the rectangle
    bool visible = true;
    bool operator==(const TShapeSettings&) const = default;
};

struct TTextSettings {
    std::string fontName = "Arial";
    int32_t fontSize = initialFontSize;  ///< points at 96 dots per inch
    bool bold = false;
    bool italic = false;
    bool underlined = false;
    TextAlignment alignment = TextAlignment::Centre;
    Colour textColour = rgb(0, 0, 0);
    Colour backgroundColour = rgb(255, 255, 255);
    Colour frameColour = rgb(255, 0, 0);
    bool filled = true;    ///< whether background and frame are painted; otherwise the text alone
    int32_t position = 2;  ///< 1 to 12 around the shape, or freeTextPosition
    bool visible = true;
    bool operator==(const TTextSettings&) const = default;
};

struct TLineSettings {
    Colour lineColour = rgb(255, 0, 0);
    Colour frameColour = rgb(255, 255, 255);
    int32_t width = 1;               ///< 1 to 11 pixels
    LineEnd front = LineEnd::Arrow;  ///< the end at the shape
    LineEnd back = LineEnd::None;    ///< the end at the label
    bool visible = true;
    bool operator==(const TLineSettings&) const = default;
};

struct TNumberSettings {
    NumberPosition position = NumberPosition::OutsideTopLeft;
    bool visible = false;
    bool operator==(const TNumberSettings&) const = default;
};

// The records' names in the rest of the system.
using __TShapeSettings = TShapeSettings;  // NOLINT(bugprone-reserved-identifier): the given name
using __TTextSettings = TTextSettings;    // NOLINT(bugprone-reserved-identifier): the given name

/// Brings every field into its range: numbers to the nearest limit, unknown kinds and ends to the first one,
/// names cut at maxNameUnits.
void clampSettings(TShapeSettings& settings);
void clampSettings(TTextSettings& settings);
void clampSettings(TLineSettings& settings);
void clampSettings(TNumberSettings& settings);

}  // namespace glimmer
