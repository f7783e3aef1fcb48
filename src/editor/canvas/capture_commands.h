#pragma once

#include <utility>
#include <vector>

#include "editor/canvas/canvas_context.h"
#include "editor/canvas/canvas_keys.h"

namespace glimmer {

// What commands do with the capture alone, whatever the tools are. Each answers whether it could be done; what is for
// the user's ears has then been said.

/// Draws one of the pixel operations on the selected area, which must not be empty. `colour` is for Fill and Glow,
/// `intensity` for Blur.
bool operateOnPixels(const CanvasContext& context, EditCommand operation, Colour colour, int32_t intensity);
/// Crops the picture to the box around the selected area.
bool cropToSelection(const CanvasContext& context);
/// Everything is selected that is not.
bool invertSelection(const CanvasContext& context);
/// Brings the selected annotation to the end of the painting order, or to its beginning.
bool bringToEnd(const CanvasContext& context, bool front);
/// Undo and redo. The area stays selected as long as it lies where it lay.
bool stepHistory(const CanvasContext& context, bool forward);
/// Numbers all annotations anew, in the order that they have.
bool renumber(const CanvasContext& context);
/// New step numbers; false when they are what they were.
bool setNumbers(const CanvasContext& context, const std::vector<std::pair<AnnotationId, int32_t>>& numbers);
/// Puts annotations on top, moved by `shift`, as one step, and selects the last.
bool insertAnnotations(const CanvasContext& context, std::vector<TBBShape> shapes, Point shift);

}  // namespace glimmer
