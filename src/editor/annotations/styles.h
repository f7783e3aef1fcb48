#pragma once

#include <array>
#include <span>
#include <string>

#include "editor/annotations/shape_settings.h"

namespace glimmer {

/// A named set of annotation settings; also the record of current tool settings that a new annotation receives.
struct TShapeStyle {
    std::string name;  ///< empty: "No style"
    TShapeSettings shape;
    TTextSettings text;
    TLineSettings line;
    TNumberSettings number;
    bool operator==(const TShapeStyle&) const = default;

    /// Takes back from `former` what a style does not decide over: where label and badge are and, unless it is to bring
    /// that along, which parts are visible.
    void keepPlacesOf(const TShapeStyle& former, bool withVisibility);
};

/// The five styles that come with the program, in the order in which they are built and listed.
std::span<const TShapeStyle> predefinedStyles();
/// The predefined style of that name, or nothing.
const TShapeStyle* predefinedStyle(const std::string& name);

/// Calls visit(key, field) for every setting of a style but its name, in one fixed order: what the settings store
/// and the tests walk over. `Style` is TShapeStyle or const TShapeStyle; fields are bool, int32_t, Colour,
/// std::string or one of the enumerations.
template <class Style, class Visitor>
void visitStyle(Style& style, Visitor&& visit) {
    visit("shapeKind", style.shape.kind);
    visit("shapeColor", style.shape.shapeColour);
    visit("shapeFrameColor", style.shape.frameColour);
    visit("shapeOpacity", style.shape.opacity);
    visit("shapeFrameWidth", style.shape.frameWidth);
    visit("shapeVisible", style.shape.visible);
    visit("fontName", style.text.fontName);
    visit("fontSize", style.text.fontSize);
    visit("fontBold", style.text.bold);
    visit("fontItalic", style.text.italic);
    visit("fontUnderline", style.text.underlined);
    visit("textAlignment", style.text.alignment);
    visit("textColor", style.text.textColour);
    visit("textBackgroundColor", style.text.backgroundColour);
    visit("textFrameColor", style.text.frameColour);
    visit("textFilled", style.text.filled);
    visit("textPosition", style.text.position);
    visit("textVisible", style.text.visible);
    visit("lineColor", style.line.lineColour);
    visit("lineFrameColor", style.line.frameColour);
    visit("lineWidth", style.line.width);
    visit("lineFront", style.line.front);
    visit("lineBack", style.line.back);
    visit("lineVisible", style.line.visible);
    visit("numberPosition", style.number.position);
    visit("numberVisible", style.number.visible);
}

/// Brings every setting into its range; see the overloads for the parts.
void clampSettings(TShapeStyle& style);

}  // namespace glimmer
