// Where the property panels are: docked beside the canvas, or in a window of their own.

#include <wx/sizer.h>

#include "editor/window/floating_panels.h"
#include "editor/window/property_panels.h"
#include "editor/window/uEditor.h"
#include "settings/options.h"

namespace glimmer {

void TEditForm::placePanels() {
    const bool floats = OptionsHolder().on("chkFloatingToolbar");
    if (floats == (floating_ != nullptr)) return;
    if (floats) {
        panels_->fill();
        GetSizer()->Detach(panels_);
        floating_ = new FloatingPanels(this, panels_);
    } else {
        floating_->giveBack(this, panels_);
        GetSizer()->Add(panels_, 0, wxEXPAND);
        floating_->Destroy();
        floating_ = nullptr;
    }
    Layout();
    placeFloatingPanels();
}

void TEditForm::placeFloatingPanels() {
    if (floating_ == nullptr || !complete_ || controller_->dragging()) return;
    const wxPoint origin = pbScreen_->GetScreenPosition();
    const wxSize size = pbScreen_->GetClientSize();
    // Without an annotation: at the canvas's right edge, within it.
    wxRect owner(origin.x + size.x - floating_->GetSize().x - FromDIP(32), origin.y + FromDIP(12), 1, 1);
    const TBBShape* shape = document_->selectedAnnotation();
    const Rect seen{0, 0, size.x, size.y};
    if (shape != nullptr && !view_.toView(shape->bounds()).intersected(seen).empty()) {
        const Rect area = view_.toView(shape->bounds()).intersected(seen);
        owner = wxRect(origin.x + area.left, origin.y + area.top, area.width(), area.height());
    }
    floating_->place(document_->selectedId(), owner, OptionsHolder().on("chkRepositionToolbar"));
}

}  // namespace glimmer
