#include "editor/annotations/styles.h"

#include "common/text.h"

namespace glimmer {

namespace {

/// One row of the table of styles: what the style sets. Everything else is carried over from the row before.
/// Labels are filled and lines have a border of the opposite lightness, so that each style can be read on white
/// and on dark pages.
struct StyleRow {
    const char* name;
    Colour shape;
    Colour shapeFrame;
    int32_t opacity;
    int32_t fontSize;
    const char* fontName;  ///< null: carried over
    Colour text;
    Colour textBackground;
    Colour textFrame;
    Colour line;
    Colour lineFrame;
};

constexpr Colour white = rgb(255, 255, 255);
constexpr Colour black = rgb(0, 0, 0);

// clang-format off
constexpr StyleRow styleRows[] = {
    // name                     shape               frame            %  size font     text              background          label frame       line              line frame
    {"Red Frame",               rgb(204, 236, 255), rgb(255, 0, 0), 46, 12, "Arial", rgb(128, 0, 0),   rgb(255, 255, 255), rgb(255, 0, 0),   rgb(255, 0, 0),   white},
    {"Green Frame (big text)",  rgb(153, 255, 153), rgb(0, 204, 0), 70, 16, nullptr, rgb(0, 64, 0),    rgb(240, 255, 240), rgb(0, 204, 0),   rgb(0, 160, 0),   white},
    {"Yellow Rectangle",        rgb(255, 255, 0),   black,          60, 12, nullptr, black,            rgb(255, 255, 204), black,            rgb(255, 255, 0), black},
    {"Cold Glass",              rgb(0, 102, 255),   black,          65, 12, "Arial", rgb(0, 32, 96),   rgb(224, 238, 255), rgb(0, 102, 255), rgb(0, 102, 255), white},
    {"Default",                 rgb(0, 128, 0),     black,          60, 11, "Arial", black,            rgb(255, 255, 225), rgb(0, 128, 0),   rgb(0, 128, 0),   white},
};
// clang-format on

std::array<TShapeStyle, std::size(styleRows)> build() {
    std::array<TShapeStyle, std::size(styleRows)> styles;
    TShapeStyle working;
    working.shape.frameWidth = 2;
    working.line.width = 2;
    for (size_t i = 0; i < styles.size(); ++i) {
        const StyleRow& row = styleRows[i];
        working.name = row.name;
        working.shape.shapeColour = row.shape;
        working.shape.frameColour = row.shapeFrame;
        working.shape.opacity = row.opacity;
        working.text.fontSize = row.fontSize;
        if (row.fontName != nullptr) working.text.fontName = row.fontName;
        working.text.textColour = row.text;
        working.text.backgroundColour = row.textBackground;
        working.text.frameColour = row.textFrame;
        working.line.lineColour = row.line;
        working.line.frameColour = row.lineFrame;
        styles[i] = working;
    }
    return styles;
}

}  // namespace

std::span<const TShapeStyle> predefinedStyles() {
    static const auto styles = build();
    return styles;
}

const TShapeStyle* predefinedStyle(const std::string& name) {
    for (const TShapeStyle& style : predefinedStyles())
        if (style.name == name) return &style;
    return nullptr;
}

void TShapeStyle::keepPlacesOf(const TShapeStyle& former, bool withVisibility) {
    text.position = former.text.position;
    number.position = former.number.position;
    if (withVisibility) return;
    shape.visible = former.shape.visible;
    text.visible = former.text.visible;
    line.visible = former.line.visible;
    number.visible = former.number.visible;
}

void clampSettings(TShapeStyle& style) {
    style.name = firstUnits(style.name, maxNameUnits);
    clampSettings(style.shape);
    clampSettings(style.text);
    clampSettings(style.line);
    clampSettings(style.number);
}

}  // namespace glimmer
