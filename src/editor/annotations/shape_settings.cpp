#include "editor/annotations/shape_settings.h"

#include "common/text.h"

namespace glimmer {

namespace {

/// The value if it is one of first..last, otherwise `first`.
template <class Enum>
Enum known(Enum value, Enum first, Enum last) {
    return value >= first && value <= last ? value : first;
}

}  // namespace

void clampSettings(TShapeSettings& settings) {
    settings.kind = known(settings.kind, ShapeKind::FilledRectangle, ShapeKind::Drawing);
    settings.shapeColour = clampColour(settings.shapeColour);
    settings.frameColour = clampColour(settings.frameColour);
    settings.opacity = clampOpacity(settings.opacity);
    settings.frameWidth = clampLineWidth(settings.frameWidth);
}

void clampSettings(TTextSettings& settings) {
    settings.fontName = firstUnits(settings.fontName, maxNameUnits);
    settings.fontSize = clampFontSize(settings.fontSize);
    settings.alignment = known(settings.alignment, TextAlignment::Left, TextAlignment::Right);
    settings.textColour = clampColour(settings.textColour);
    settings.backgroundColour = clampColour(settings.backgroundColour);
    settings.frameColour = clampColour(settings.frameColour);
    settings.position = clampTextPosition(settings.position);
}

void clampSettings(TLineSettings& settings) {
    settings.lineColour = clampColour(settings.lineColour);
    settings.frameColour = clampColour(settings.frameColour);
    settings.width = clampLineWidth(settings.width);
    settings.front = known(settings.front, LineEnd::None, LineEnd::Bullet);
    settings.back = known(settings.back, LineEnd::None, LineEnd::Bullet);
}

void clampSettings(TNumberSettings& settings) {
    settings.position = known(settings.position, NumberPosition::OutsideTopLeft, NumberPosition::InsideBottomRight);
}

}  // namespace glimmer
