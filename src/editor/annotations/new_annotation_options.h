#pragma once

#include <cstdint>
#include <string>

#include "editor/annotations/styles.h"

namespace glimmer {

class Options;

/// What the options say of new annotations: which of their parts are shown, where label and number stand, the font.
struct NewAnnotationOptions {
    bool text = true;
    bool line = true;
    bool number = false;
    int32_t textPosition = 2;
    NumberPosition numberPosition = NumberPosition::OutsideTopLeft;
    std::string fontName;
    /// A style then also decides which parts are shown.
    bool styleDecides = false;
    bool operator==(const NewAnnotationOptions&) const = default;
};
NewAnnotationOptions newAnnotationOptions(const Options& options);

/// Which parts the next annotation shows: those of the options, unless the style decides.
void showParts(TShapeStyle& style, const NewAnnotationOptions& options);
/// Takes over what differs between the options before and after a change. What the user has set on the canvas since
/// then stays.
void followChange(TShapeStyle& style, const NewAnnotationOptions& before, const NewAnnotationOptions& after);

}  // namespace glimmer
