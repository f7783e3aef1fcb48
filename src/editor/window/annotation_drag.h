#pragma once

#include <wx/dnd.h>

#include <functional>
#include <vector>

#include "editor/annotations/uShapes.h"

namespace glimmer {

/// Lets annotations be dropped on a canvas, from any window of any process of the program. Files that are dropped
/// there go on to the canvas's top-level window, as those dropped beside the canvas do.
class AnnotationDropTarget : public wxDropTarget {
public:
    using Drop = std::function<bool(std::vector<TBBShape>, wxPoint)>;
    /// `drop` gets the annotations and the place in the canvas's client area.
    AnnotationDropTarget(wxWindow* canvas, Drop drop);

    wxDragResult OnData(wxCoord x, wxCoord y, wxDragResult standard) override;

private:
    wxDragResult take(wxPoint at, wxDragResult standard);

    wxWindow* canvas_;
    Drop drop_;
    wxCustomDataObject* annotations_;  ///< the data object's
    wxFileDataObject* files_;
};

/// Carries a copy of the annotation until the button is let go.
void dragAnnotation(wxWindow* canvas, const TBBShape& shape);

}  // namespace glimmer
