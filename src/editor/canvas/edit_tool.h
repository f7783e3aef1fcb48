#pragma once

#include <cstdint>

namespace glimmer {

/// What a press on the empty canvas begins.
enum class EditTool : uint8_t {
    Pointer,             ///< selects areas and annotations
    WindowSelector,      ///< selects the block of the page under the mouse
    TextShapeRectangle,  ///< makes an annotation of the current shape kind
    TextShapeEllipse,    ///< selects an ellipse
    TextShapePolygon,    ///< selects a polygon, corner by corner
    TextPen,             ///< free-hand drawing
    TextLine,            ///< makes a label with a line to a place
    Text,                ///< makes a label alone
    RectHighlight,       ///< makes a rectangle alone
    Line,                ///< makes a line alone
};

}  // namespace glimmer
