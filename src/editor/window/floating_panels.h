#pragma once

#include <wx/minifram.h>

#include "editor/document/content.h"

namespace glimmer {

/// The window around the property panels while they float ("Floating tool windows"). It belongs to the canvas's form,
/// whose shortcuts work in it too, and is on the screen as long as the form is.
class FloatingPanels : public wxMiniFrame {
public:
    /// Takes the panels over; giveBack() must be called before it is destroyed, unless the form goes as well.
    FloatingPanels(wxWindow* form, wxWindow* panels);
    void giveBack(wxWindow* form, wxWindow* panels);

    /// Shows or hides it with the form. When another annotation was selected it goes beside `owner` (screen
    /// coordinates), within the screen.
    void place(AnnotationId selected, const wxRect& owner, bool follow);

private:
    AnnotationId placedFor_ = noAnnotation;
    bool placed_ = false;
};

}  // namespace glimmer
