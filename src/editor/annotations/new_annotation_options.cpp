#include "editor/annotations/new_annotation_options.h"

#include "settings/options.h"

namespace glimmer {

NewAnnotationOptions newAnnotationOptions(const Options& options) {
    NewAnnotationOptions found;
    found.text = options.on("chkDisplayAnnotations");
    found.line = options.on("chkDisplayCalloutLines");
    found.number = options.on("chkDisplayNumbers");
    found.textPosition = options.number("cmbAnnotationPlacement") + 1;
    found.numberPosition = static_cast<NumberPosition>(options.number("cmbNumberPlacement") + 1);
    found.fontName = options.text("edtFontName");
    found.styleDecides = options.on("chkRememberVisibility");
    return found;
}

void showParts(TShapeStyle& style, const NewAnnotationOptions& options) {
    if (options.styleDecides) return;
    style.shape.visible = true;
    style.text.visible = options.text;
    style.line.visible = options.line;
    style.number.visible = options.number;
}

void followChange(TShapeStyle& style, const NewAnnotationOptions& before, const NewAnnotationOptions& after) {
    if (after.text != before.text) style.text.visible = after.text;
    if (after.line != before.line) style.line.visible = after.line;
    if (after.number != before.number) style.number.visible = after.number;
    if (after.textPosition != before.textPosition) style.text.position = after.textPosition;
    if (after.numberPosition != before.numberPosition) style.number.position = after.numberPosition;
    if (after.fontName != before.fontName && !after.fontName.empty()) style.text.fontName = after.fontName;
    clampSettings(style);
}

}  // namespace glimmer
